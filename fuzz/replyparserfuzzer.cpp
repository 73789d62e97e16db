// libFuzzer target over the service reply parsers: arbitrary bytes must never crash, hang or
// leave a record in a state the callers do not expect. Built and run by fuzz/run.

#include "api/replyparser.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <cstdint>
#include <cstdlib>

using tavero::ReplyParser;

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

bool isOneOf(int status, std::initializer_list<int> allowed)
{
    for (const int value : allowed) {
        if (status == value)
            return true;
    }
    return false;
}

void checkServerList(const ServerListGettingResult& list, const AccountInfoGettingResult& account)
{
    require(isOneOf(list.status, {0, 1}));
    if (list.status != 0)
        require(list.serversByCountry.isEmpty() && list.countriesById.isEmpty());
    for (auto it = list.serversByCountry.begin(); it != list.serversByCountry.end(); ++it) {
        require(list.countriesById.contains(it.key()));
        for (const VpnServerInformation& server : it.value()) {
            require(server.countryId == it.key());
            require(server.isAvailable);
            require(server.hasAccountData == (account.status == 0));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 1 << 20)
        return 0;
    const QByteArray body(reinterpret_cast<const char*>(data), static_cast<int>(size));

    RequestResult status;
    QJsonDocument document;
    if (ReplyParser::tryParseJson(body, document, status)) {
        require(status.status == 5 && !document.isNull());
        const bool clean = ReplyParser::parseResponseStatus(document.object(), status);
        require(status.status == (clean ? 0 : 1));

        LoginResult login;
        ReplyParser::readLogin(document, login);
        require(isOneOf(login.status, {0, 1}));
        require(login.status == 0 || login.token.isEmpty());

        AccountInfoGettingResult account;
        ReplyParser::readAccountInfo(document, account);
        require(isOneOf(account.status, {0, 1}));

        for (const int accountStatus : {0, 1}) {
            AccountInfoGettingResult source = account;
            source.status = accountStatus;
            ServerListGettingResult list;
            ReplyParser::parseServersListJson(document, source, list);
            checkServerList(list, source);
        }
    } else {
        require(status.status == (body.isEmpty() ? 2 : 4));
    }

    // An expired-token reply is an error reply, so it can never carry a usable new token.
    if (ReplyParser::isTokenExpired(body))
        require(!ReplyParser::refreshedToken(body));

    const IpGettingResult ip = ReplyParser::processReceiveIpDataNewVersion(body);
    require(isOneOf(ip.status, {0, 1, 2, 4}));
    require(ip.countryCode == ip.countryCode.toLower());
    require(ip.status == 0 || (!ip.isProtected && ip.ip.isEmpty()));

    const LastVersionGettingResult version = ReplyParser::parseLastVersion(body);
    require(isOneOf(version.status, {0, 2, 4, 5}));
    require(version.status == 0 || version.versionInt == 0);
    return 0;
}
