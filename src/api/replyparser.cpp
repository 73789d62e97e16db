#include "api/replyparser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <algorithm>
#include <cmath>
#include <limits>

namespace tavero {

namespace {

// Reads values out of a reply the toolkit's way: a missing, null or wrongly typed value reads as
// its default, so one odd value never costs the rest of the reply.
struct Reader {
    static QJsonObject object(const QJsonObject& parent, const char* key)
    {
        return parent.value(QLatin1String(key)).toObject();
    }

    static QJsonArray array(const QJsonObject& parent, const char* key)
    {
        return parent.value(QLatin1String(key)).toArray();
    }

    static QString text(const QJsonObject& parent, const char* key)
    {
        return parent.value(QLatin1String(key)).toString();
    }

    static bool flag(const QJsonObject& parent, const char* key)
    {
        return parent.value(QLatin1String(key)).toBool();
    }

    static int number(const QJsonObject& parent, const char* key)
    {
        const double d = parent.value(QLatin1String(key)).toDouble();
        if (!std::isfinite(d))
            return 0;
        constexpr double lowest = std::numeric_limits<int>::min();
        constexpr double highest = std::numeric_limits<int>::max();
        return static_cast<int>(std::trunc(std::clamp(d, lowest, highest)));
    }
};

} // namespace

QString ReplyParser::noInternetText()
{
    return QStringLiteral("No Internet");
}

bool ReplyParser::tryParseJson(const QByteArray& body, QJsonDocument& document,
                               RequestResult& result)
{
    if (body.isEmpty()) {
        result.status = RequestResult::NoInternet;
        result.message = noInternetText();
        return false;
    }
    QJsonParseError error{};
    QJsonDocument parsed = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError) {
        result.status = RequestResult::InvalidResponse;
        result.message = QString::fromLatin1(body);
        return false;
    }
    // Valid JSON that is no object (an array) reads as an empty object, like every other value
    // of the wrong type.
    document = std::move(parsed);
    return true;
}

bool ReplyParser::parseResponseStatus(const QJsonObject& object, RequestResult& result)
{
    const bool hasError =
        object.contains(QLatin1String("error")) || object.contains(QLatin1String("message"));
    result.status = hasError ? RequestResult::ServerError : RequestResult::Ok;
    if (hasError)
        result.message = Reader::text(object, "message");
    return !hasError;
}

bool ReplyParser::isTokenExpired(const QByteArray& body)
{
    QJsonDocument document;
    RequestResult scratch;
    if (!tryParseJson(body, document, scratch))
        return false;
    const QJsonObject object = document.object();
    return object.contains(QLatin1String("error")) &&
           Reader::text(object, "error") == QLatin1String("token_expired");
}

std::optional<QString> ReplyParser::refreshedToken(const QByteArray& body)
{
    QJsonDocument document;
    RequestResult result;
    if (!tryParseJson(body, document, result) || !parseResponseStatus(document.object(), result))
        return std::nullopt;
    const QJsonObject data = Reader::object(document.object(), "data");
    if (!data.contains(QLatin1String("token")))
        return std::nullopt;
    return Reader::text(data, "token");
}

void ReplyParser::readLogin(const QJsonDocument& document, LoginResult& result)
{
    if (!parseResponseStatus(document.object(), result))
        return;
    result.token = Reader::text(Reader::object(document.object(), "data"), "token");
}

void ReplyParser::readAccountInfo(const QJsonDocument& document, AccountInfoGettingResult& result)
{
    if (!parseResponseStatus(document.object(), result))
        return;
    const QJsonObject data = Reader::object(document.object(), "data");
    const QJsonObject appp = Reader::object(Reader::object(data, "appp"), "data");
    const QJsonObject vpn = Reader::object(Reader::object(data, "vpn"), "data");
    result.email = Reader::text(data, "email");
    result.vpnUsername = Reader::text(appp, "username");
    result.vpnPassword = Reader::text(appp, "password");
    result.sharedKey = Reader::text(appp, "shared_key");
    result.caCertificate = Reader::text(vpn, "ca");
    result.privateKey = Reader::text(vpn, "prk");
    result.publicKey = Reader::text(vpn, "pbk");
}

void ReplyParser::parseServersListJson(const QJsonDocument& document,
                                       const AccountInfoGettingResult& account,
                                       ServerListGettingResult& result)
{
    if (!parseResponseStatus(document.object(), result))
        return;
    const bool withAccount = account.status == RequestResult::Ok;
    // Element by element: an odd element reads with defaults and costs no other server.
    for (const QJsonValue& value : Reader::array(document.object(), "data")) {
        const QJsonObject element = value.toObject();
        const QJsonObject countryObject = Reader::object(element, "country");
        const QJsonObject config = Reader::object(element, "config");

        CountryInformation country;
        country.id = Reader::number(countryObject, "id");
        country.code = Reader::text(countryObject, "code");
        country.name = Reader::text(countryObject, "name");
        country.isAvailable = true;
        result.countriesById.insert(country.id, country);
        result.countriesByCode.insert(country.code, country);

        VpnServerInformation server;
        server.countryId = country.id;
        server.isAvailable = country.isAvailable;
        server.isRecommended = Reader::flag(element, "is_recom");
        server.load = Reader::number(element, "load");
        server.name = Reader::text(element, "name");
        server.host = Reader::text(config, "host");
        server.hasOvpnConfig = config.contains(QLatin1String("ovpn")); // null included
        if (withAccount) {
            server.hasAccountData = true;
            server.vpnUsername = account.vpnUsername;
            server.vpnPassword = account.vpnPassword;
            server.sharedKey = account.sharedKey;
        }
        result.serversByCountry[country.id].append(server);
    }
}

IpGettingResult ReplyParser::processReceiveIpDataNewVersion(const QByteArray& body)
{
    IpGettingResult result;
    QJsonDocument document;
    if (!tryParseJson(body, document, result))
        return result;
    const QJsonObject object = document.object();
    if (!parseResponseStatus(object, result))
        return result;
    result.ip = Reader::text(object, "ip");
    result.isProtected = Reader::flag(object, "protected");
    result.countryCode = Reader::text(object, "country_code").toLower();
    return result;
}

LastVersionGettingResult ReplyParser::parseLastVersion(const QByteArray& body)
{
    LastVersionGettingResult result;
    QJsonDocument document;
    if (!tryParseJson(body, document, result))
        return result;
    const QJsonObject data = Reader::object(document.object(), "data");
    if (data.isEmpty())
        return result;
    result.version = Reader::text(data, "version");
    result.versionInt = Reader::number(data, "version_int");
    result.url = Reader::text(data, "url");
    result.changelog = Reader::text(data, "changelog");
    result.status = RequestResult::Ok;
    return result;
}

} // namespace tavero
