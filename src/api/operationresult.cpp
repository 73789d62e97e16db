#include "api/operationresult.h"

OperationResult::OperationResult() = default;

OperationResult::OperationResult(const QString& message)
    : isSuccess(false)
    , message(message)
{}

OperationResult::OperationResult(Code code)
    : code(code)
    , isSuccess(false)
{}

OperationResult::OperationResult(const QString& message, Code code)
    : code(code)
    , isSuccess(false)
    , message(message)
{}
