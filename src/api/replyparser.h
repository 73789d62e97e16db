#pragma once

#include "api/accountinfogettingresult.h"
#include "api/ipgettingresult.h"
#include "api/lastversiongettingresult.h"
#include "api/loginresult.h"
#include "api/serverlistgettingresult.h"

#include <QByteArray>
#include <optional>

class QJsonDocument;
class QJsonObject;

namespace tavero {

// Turns the service's reply bodies into result records: pure functions without network or state,
// so unit tests and the fuzz target drive them directly. Rules shared by every reply:
//  - an empty body is status 2 "No Internet"; a body that is not JSON is status 4 with the raw
//    body (Latin-1) as message;
//  - an object with an "error" or a "message" key is status 1 with the "message" text;
//  - a missing, null or wrongly typed value reads as its default: empty text, false, 0, an empty
//    object or array ("data": 5, "country": "de", a top-level array). So a reply that is JSON is
//    never unreadable, and one odd part (a server element, "appp") costs nothing else.
// Numbers are truncated toward zero and clamped to the int range.
class ReplyParser {
public:
    // Status text of an empty reply.
    static QString noInternetText();

    // True when `body` is non-empty valid JSON, stored in `document`; otherwise fills `result`
    // (status 2 or 4) and leaves `document` alone.
    static bool tryParseJson(const QByteArray& body, QJsonDocument& document,
                             RequestResult& result);

    // Status 1 with the "message" text when the object has an error key, else status 0.
    static bool parseResponseStatus(const QJsonObject& object, RequestResult& result);

    // True only for a JSON object whose "error" is the text "token_expired".
    static bool isTokenExpired(const QByteArray& body);

    // "data"."token" of a "/refresh" reply without error keys, whenever the key is there (its
    // text may be empty); nothing when the reply renews nothing.
    static std::optional<QString> refreshedToken(const QByteArray& body);

    // "data"."token" of a login reply; status 0 with an empty token when the key is missing.
    static void readLogin(const QJsonDocument& document, LoginResult& result);

    // The "/user" reply: e-mail, VPN account credentials and certificate texts.
    static void readAccountInfo(const QJsonDocument& document, AccountInfoGettingResult& result);

    // A "/hotspots" reply. Servers are grouped by country id in reply order; the account's VPN
    // credentials are copied into every server when the account record has status 0.
    static void parseServersListJson(const QJsonDocument& document,
                                     const AccountInfoGettingResult& account,
                                     ServerListGettingResult& result);

    // The IP-information reply: address, "protected" flag, country code in lower case.
    static IpGettingResult processReceiveIpDataNewVersion(const QByteArray& body);

    // The version reply. A missing or empty "data" object (an array too) leaves status 5: no
    // update is known for this device. Error keys are not examined, so an error object without
    // "data" ends the same.
    static LastVersionGettingResult parseLastVersion(const QByteArray& body);
};

} // namespace tavero
