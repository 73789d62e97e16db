#include "cli/exitcode.h"

#include "api/operationresult.h"

#include <QCoreApplication>

namespace tavero::cli {
namespace {

bool isAnyOf(const QString& message, const char* key, std::initializer_list<const char*> contexts)
{
    return std::any_of(contexts.begin(), contexts.end(), [&](const char* context) {
        return message == QCoreApplication::translate(context, key);
    });
}

} // namespace

int exitCodeFor(const OperationResult& result, int fallback)
{
    if (result.isSuccess)
        return Success;
    if (result.code == OperationResult::NoInternet)
        return NoConnection;
    // The manager reports these failures by their (translated) text only; the same translation
    // gives the same text here.
    if (isAnyOf(result.message, "warning.connection_problems_check_internet_connection",
                {"tavero::VpnManager", "tavero::VpnServerSelector", "tavero::ConnectionChain"})) {
        return NoConnection;
    }
    if (isAnyOf(result.message, "warning.login_or_pass_are_incorrect", {"tavero::VpnManager"}) ||
        isAnyOf(result.message, "warning.can_not_authorize_try_again", {"tavero::VpnManager"})) {
        return LoginRefused;
    }
    return fallback;
}

} // namespace tavero::cli
