#pragma once

#include <QWidget>
#include <functional>
#include <memory>

namespace tavero::screenshots {

// Runs `trigger`, which shows a modal message box; photographs the box from inside its event loop
// and closes it with Escape. The picture comes back as a widget of the box's size, null when no
// box appeared.
std::unique_ptr<QWidget> photographMessageBox(const std::function<void()>& trigger);

} // namespace tavero::screenshots
