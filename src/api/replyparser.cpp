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

const QString unreadableStructureText = QStringLiteral("Unexpected reply structure");

// Reads values out of a reply and remembers whether a container had the wrong type.
class Reader {
public:
    QJsonObject object(const QJsonObject& parent, const char* key)
    {
        const QJsonValue value = parent.value(QLatin1String(key));
        if (value.isObject())
            return value.toObject();
        noteWrongContainer(value);
        return {};
    }

    QJsonArray array(const QJsonObject& parent, const char* key)
    {
        const QJsonValue value = parent.value(QLatin1String(key));
        if (value.isArray())
            return value.toArray();
        noteWrongContainer(value);
        return {};
    }

    QJsonObject element(const QJsonValue& value)
    {
        if (value.isObject())
            return value.toObject();
        m_broken = true;
        return {};
    }

    bool broken() const { return m_broken; }

    static QString text(const QJsonObject& parent, const char* key)
    {
        const QJsonValue value = parent.value(QLatin1String(key));
        return value.isString() ? value.toString() : QString();
    }

    static bool flag(const QJsonObject& parent, const char* key)
    {
        const QJsonValue value = parent.value(QLatin1String(key));
        return value.isBool() && value.toBool();
    }

    static int number(const QJsonObject& parent, const char* key)
    {
        const QJsonValue value = parent.value(QLatin1String(key));
        if (!value.isDouble())
            return 0;
        const double d = value.toDouble();
        if (!std::isfinite(d))
            return 0;
        constexpr double lowest = std::numeric_limits<int>::min();
        constexpr double highest = std::numeric_limits<int>::max();
        return static_cast<int>(std::trunc(std::clamp(d, lowest, highest)));
    }

    static bool present(const QJsonObject& parent, const char* key)
    {
        const QJsonValue value = parent.value(QLatin1String(key));
        return !value.isUndefined() && !value.isNull();
    }

private:
    void noteWrongContainer(const QJsonValue& value)
    {
        if (!value.isUndefined() && !value.isNull())
            m_broken = true;
    }

    bool m_broken = false;
};

void markUnreadable(RequestResult& result)
{
    result.status = RequestResult::InvalidResponse;
    result.message = unreadableStructureText;
}

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
    if (error.error != QJsonParseError::NoError || !parsed.isObject()) {
        result.status = RequestResult::InvalidResponse;
        result.message = QString::fromLatin1(body);
        return false;
    }
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
    const QJsonValue error = document.object().value(QLatin1String("error"));
    return error.isString() && error.toString() == QLatin1String("token_expired");
}

QString ReplyParser::refreshedToken(const QByteArray& body)
{
    QJsonDocument document;
    RequestResult result;
    if (!tryParseJson(body, document, result) || !parseResponseStatus(document.object(), result))
        return {};
    Reader reader;
    const QJsonObject data = reader.object(document.object(), "data");
    return reader.broken() ? QString() : Reader::text(data, "token");
}

void ReplyParser::readLogin(const QJsonDocument& document, LoginResult& result)
{
    if (!parseResponseStatus(document.object(), result))
        return;
    Reader reader;
    const QJsonObject data = reader.object(document.object(), "data");
    if (reader.broken()) {
        markUnreadable(result);
        return;
    }
    result.token = Reader::text(data, "token");
}

void ReplyParser::readAccountInfo(const QJsonDocument& document, AccountInfoGettingResult& result)
{
    if (!parseResponseStatus(document.object(), result))
        return;
    Reader reader;
    const QJsonObject data = reader.object(document.object(), "data");
    const QJsonObject appp = reader.object(reader.object(data, "appp"), "data");
    const QJsonObject vpn = reader.object(reader.object(data, "vpn"), "data");
    if (reader.broken()) {
        markUnreadable(result);
        return;
    }
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
    if (!document.isObject()) {
        markUnreadable(result);
        return;
    }
    if (!parseResponseStatus(document.object(), result))
        return;

    Reader reader;
    const QJsonArray data = reader.array(document.object(), "data");
    QMap<int, QVector<VpnServerInformation>> serversByCountry;
    QMap<int, CountryInformation> countriesById;
    QMap<QString, CountryInformation> countriesByCode;
    const bool withAccount = account.status == RequestResult::Ok;

    for (const QJsonValue& value : data) {
        const QJsonObject element = reader.element(value);
        const QJsonObject countryObject = reader.object(element, "country");
        const QJsonObject config = reader.object(element, "config");
        if (reader.broken())
            break;

        CountryInformation country;
        country.id = Reader::number(countryObject, "id");
        country.code = Reader::text(countryObject, "code");
        country.name = Reader::text(countryObject, "name");
        country.isAvailable = true;
        countriesById.insert(country.id, country);
        countriesByCode.insert(country.code, country);

        VpnServerInformation server;
        server.countryId = country.id;
        server.isAvailable = country.isAvailable;
        server.isRecommended = Reader::flag(element, "is_recom");
        server.load = Reader::number(element, "load");
        server.name = Reader::text(element, "name");
        server.host = Reader::text(config, "host");
        server.hasOvpnConfig = Reader::present(config, "ovpn");
        if (withAccount) {
            server.hasAccountData = true;
            server.vpnUsername = account.vpnUsername;
            server.vpnPassword = account.vpnPassword;
            server.sharedKey = account.sharedKey;
        }
        serversByCountry[country.id].append(server);
    }

    if (reader.broken()) {
        markUnreadable(result);
        return;
    }
    result.serversByCountry = std::move(serversByCountry);
    result.countriesById = std::move(countriesById);
    result.countriesByCode = std::move(countriesByCode);
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
    Reader reader;
    const QJsonObject data = reader.object(document.object(), "data");
    if (reader.broken()) {
        markUnreadable(result);
        return result;
    }
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
