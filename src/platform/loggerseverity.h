#pragma once

namespace tavero {

enum class LoggerSeverity : int {
    Warning = 0,
    Information = 1,
    Error = 2,
};

} // namespace tavero
