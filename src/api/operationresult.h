#pragma once

#include <QString>

// The user-facing outcome of a manager-, engine- or platform-level operation. Success is decided by
// `isSuccess` alone; `code` only refines a failure.
struct OperationResult {
    enum Code : int {
        General = 1,
        NoInternet = 2,   // the network or the service could not be reached
        LoginRefused = 3, // the service did not accept the stored log-in
    };

    OperationResult();                                  // success
    explicit OperationResult(const QString& message);   // failure, even with an empty text
    explicit OperationResult(Code code);                // failure without text
    OperationResult(const QString& message, Code code); // failure

    Code code = General;
    bool isSuccess = true;
    QString message;
};
