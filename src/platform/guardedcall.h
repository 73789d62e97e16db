#pragma once

#include "api/operationresult.h"

#include <QCoreApplication>
#include <QtGlobal>
#include <exception>

namespace tavero {

// Runs an unguarded platform worker and turns any exception it lets escape into a failed result
// carrying `messageKey` translated in the "QObject" context. Mark the key at the call site with
// QT_TRANSLATE_NOOP("QObject", ...) so the catalogue tools see it.
namespace detail {
inline void logEscapedException(const char* operation, const char* what) noexcept
{
    try {
        qWarning("%s failed: %s", operation, what ? what : "unknown exception");
    } catch (...) {
    }
}
} // namespace detail

template <typename Worker>
OperationResult guardedCall(const char* operation, const char* messageKey, Worker&& worker) noexcept
{
    try {
        return worker();
    } catch (const std::exception& error) {
        detail::logEscapedException(operation, error.what());
    } catch (...) {
        detail::logEscapedException(operation, nullptr);
    }
    try {
        return OperationResult(QCoreApplication::translate("QObject", messageKey));
    } catch (...) {
        // Out of memory while building the text: still a failure, just without words.
        return OperationResult(OperationResult::General);
    }
}

} // namespace tavero
