#include "api/replyparser.h"
#include "support/testmain.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <limits>

using tavero::ReplyParser;

namespace {

QJsonDocument document(const QByteArray& json)
{
    QJsonDocument parsed;
    RequestResult scratch;
    if (!ReplyParser::tryParseJson(json, parsed, scratch))
        qFatal("test reply is not a JSON object: %s", json.constData());
    return parsed;
}

AccountInfoGettingResult accountWithStatus(int status)
{
    AccountInfoGettingResult account;
    account.status = status;
    account.vpnUsername = "user";
    account.vpnPassword = "secret";
    account.sharedKey = "psk";
    return account;
}

ServerListGettingResult parseList(const QByteArray& json, int accountStatus = 0)
{
    ServerListGettingResult result;
    ReplyParser::parseServersListJson(document(json), accountWithStatus(accountStatus), result);
    return result;
}

const QByteArray twoCountries = R"({"data": [
    {"name": "de-1", "is_recom": true, "load": 37.9,
     "country": {"id": 4, "code": "de", "name": "Germany"},
     "config": {"host": "de-1.example", "ovpn": {"udp": 1194}}},
    {"name": "nl-1", "load": 12,
     "country": {"id": 2, "code": "nl", "name": "Netherlands"},
     "config": {"host": "nl-1.example"}},
    {"name": "de-2", "is_recom": false, "load": 80,
     "country": {"id": 4, "code": "de", "name": "Germany"},
     "config": {"host": "de-2.example", "ovpn": "yes"}}
]})";

} // namespace

class TestReplyParser : public QObject {
    Q_OBJECT
private slots:
    void bodyReading_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("parsed");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty") << QByteArray() << false << 2 << "No Internet";
        QTest::newRow("html") << QByteArray("<html>oops</html>") << false << 4
                              << "<html>oops</html>";
        QTest::newRow("truncated") << QByteArray(R"({"data": [)") << false << 4 << R"({"data": [)";
        QTest::newRow("array is no reply object") << QByteArray("[1, 2]") << false << 4 << "[1, 2]";
        QTest::newRow("latin-1 message")
            << QByteArray("\xe9t\xe9") << false << 4 << QString::fromLatin1("\xe9t\xe9");
        QTest::newRow("object") << QByteArray(R"({"data": {}})") << true << 5 << "";
    }
    void bodyReading()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, parsed);
        QFETCH(int, status);
        QFETCH(QString, message);
        RequestResult result;
        QJsonDocument parsedDocument;
        QCOMPARE(ReplyParser::tryParseJson(body, parsedDocument, result), parsed);
        QCOMPARE(result.status, status); // a parsed body leaves the record untouched
        QCOMPARE(result.message, message);
        QCOMPARE(parsedDocument.isObject(), parsed);
    }

    void errorKeys_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("message");
        QTest::newRow("message alone") << QByteArray(R"({"message": "x"})") << 1 << "x";
        QTest::newRow("error alone") << QByteArray(R"({"error": "token_expired"})") << 1 << "";
        QTest::newRow("both") << QByteArray(R"({"error": "e", "message": "m", "data": {}})") << 1
                              << "m";
        QTest::newRow("null error still an error") << QByteArray(R"({"error": null})") << 1 << "";
        QTest::newRow("number message") << QByteArray(R"({"message": 5})") << 1 << "";
        QTest::newRow("success") << QByteArray(R"({"data": {"token": "t"}})") << 0 << "";
    }
    void errorKeys()
    {
        QFETCH(QByteArray, json);
        QFETCH(int, status);
        QFETCH(QString, message);
        RequestResult result;
        QCOMPARE(ReplyParser::parseResponseStatus(document(json).object(), result), status == 0);
        QCOMPARE(result.status, status);
        QCOMPARE(result.message, message);
    }

    void tokenExpiry_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("expired");
        QTest::newRow("error only") << QByteArray(R"({"error": "token_expired"})") << true;
        QTest::newRow("with message")
            << QByteArray(R"({"error": "token_expired", "message": "Token has expired"})") << true;
        QTest::newRow("other error") << QByteArray(R"({"error": "token_invalid"})") << false;
        QTest::newRow("in message only") << QByteArray(R"({"message": "token_expired"})") << false;
        QTest::newRow("not text") << QByteArray(R"({"error": ["token_expired"]})") << false;
        QTest::newRow("not json") << QByteArray("token_expired") << false;
        QTest::newRow("empty") << QByteArray() << false;
    }
    void tokenExpiry()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, expired);
        QCOMPARE(ReplyParser::isTokenExpired(body), expired);
    }

    void refreshedToken_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("token");
        QTest::newRow("renewed") << QByteArray(R"({"data": {"token": "new"}})") << "new";
        QTest::newRow("error") << QByteArray(
                                      R"({"error": "token_expired", "data": {"token": "x"}})")
                               << "";
        QTest::newRow("no token") << QByteArray(R"({"data": {}})") << "";
        QTest::newRow("token of wrong type") << QByteArray(R"({"data": {"token": 42}})") << "";
        QTest::newRow("data of wrong type") << QByteArray(R"({"data": "token"})") << "";
        QTest::newRow("garbage") << QByteArray("<html>") << "";
    }
    void refreshedToken()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, token);
        QCOMPARE(ReplyParser::refreshedToken(body), token);
    }

    void login_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("token");
        QTest::addColumn<QString>("message");
        QTest::newRow("token") << QByteArray(R"({"data": {"token": "abc", "extra": 1}})") << 0
                               << "abc"
                               << "";
        // No token, data of the wrong type and refused credentials: tst_serverapi, over the wire.
        QTest::newRow("no data: ok and empty") << QByteArray(R"({})") << 0 << ""
                                               << "";
        QTest::newRow("null data") << QByteArray(R"({"data": null})") << 0 << ""
                                   << "";
    }
    void login()
    {
        QFETCH(QByteArray, json);
        QFETCH(int, status);
        QFETCH(QString, token);
        QFETCH(QString, message);
        LoginResult result;
        ReplyParser::readLogin(document(json), result);
        QCOMPARE(result.status, status);
        QCOMPARE(result.token, token);
        QCOMPARE(result.message, message);
    }

    void accountShapes_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("email");
        QTest::newRow("parts missing") << QByteArray(R"({"data": {"email": "e"}})") << 0 << "e";
        QTest::newRow("nested nulls")
            << QByteArray(R"({"data": {"email": "e", "vpn": null, "appp": {"data": null}}})") << 0
            << "e";
        QTest::newRow("vpn of wrong type")
            << QByteArray(R"({"data": {"email": "e", "vpn": "x"}})") << 4 << "";
        QTest::newRow("vpn data of wrong type")
            << QByteArray(R"({"data": {"email": "e", "vpn": {"data": [1]}}})") << 4 << "";
        QTest::newRow("data of wrong type") << QByteArray(R"({"data": 5})") << 4 << "";
        QTest::newRow("email of wrong type") << QByteArray(R"({"data": {"email": 7}})") << 0 << "";
        QTest::newRow("error") << QByteArray(R"({"error": "token_expired", "message": "m"})") << 1
                               << "";
    }
    void accountShapes()
    {
        QFETCH(QByteArray, json);
        QFETCH(int, status);
        QFETCH(QString, email);
        AccountInfoGettingResult account;
        ReplyParser::readAccountInfo(document(json), account);
        QCOMPARE(account.status, status);
        QCOMPARE(account.email, email);
        QVERIFY(!account.hasVPNData());
    }

    void serverListGroupsByCountryInReplyOrder()
    {
        const ServerListGettingResult list = parseList(twoCountries);
        QCOMPARE(list.status, 0);
        QCOMPARE(list.serversByCountry.keys(), (QList<int>{2, 4}));
        QCOMPARE(list.countriesById.size(), 2);
        QCOMPARE(list.countriesByCode.keys(), (QStringList{"de", "nl"}));
        QCOMPARE(list.countriesByCode.value("de").id, 4);
        QCOMPARE(list.countriesById.value(2).name, QString("Netherlands"));
        QVERIFY(list.countriesById.value(4).isAvailable);

        const QVector<VpnServerInformation> germany = list.serversByCountry.value(4);
        QCOMPARE(germany.size(), 2);
        QCOMPARE(germany.at(0).name, QString("de-1"));
        QCOMPARE(germany.at(1).name, QString("de-2"));
        QCOMPARE(germany.at(0).load, 37); // truncated, not rounded
        QVERIFY(germany.at(0).isRecommended);
        QVERIFY(!germany.at(1).isRecommended);
        QCOMPARE(germany.at(0).host, QString("de-1.example"));
        QCOMPARE(germany.at(0).countryId, 4);
        QVERIFY(germany.at(0).isAvailable);
        QVERIFY(germany.at(0).hasOvpnConfig);
        QVERIFY(germany.at(1).hasOvpnConfig); // any value of "ovpn" counts
        const VpnServerInformation netherlands = list.serversByCountry.value(2).at(0);
        QVERIFY(!netherlands.hasOvpnConfig);
        QVERIFY(!netherlands.isRecommended); // "is_recom" absent
    }

    void accountCredentialsCopiedOnlyFromAGoodAccount_data()
    {
        QTest::addColumn<int>("accountStatus");
        QTest::addColumn<bool>("copied");
        QTest::newRow("ok") << 0 << true;
        QTest::newRow("server error") << 1 << false;
        QTest::newRow("no internet") << 2 << false;
        QTest::newRow("not set") << 5 << false;
    }
    void accountCredentialsCopiedOnlyFromAGoodAccount()
    {
        QFETCH(int, accountStatus);
        QFETCH(bool, copied);
        const ServerListGettingResult list = parseList(twoCountries, accountStatus);
        QCOMPARE(list.status, 0);
        for (const auto& servers : list.serversByCountry) {
            for (const VpnServerInformation& server : servers) {
                QCOMPARE(server.hasAccountData, copied);
                QCOMPARE(server.vpnUsername, copied ? QString("user") : QString());
                QCOMPARE(server.vpnPassword, copied ? QString("secret") : QString());
                QCOMPARE(server.sharedKey, copied ? QString("psk") : QString());
            }
        }
    }

    void serverFieldsOfWrongTypeReadAsAbsent_data()
    {
        QTest::addColumn<QByteArray>("element");
        QTest::addColumn<int>("load");
        QTest::addColumn<int>("countryId");
        QTest::addColumn<bool>("ovpn");
        QTest::newRow("load text")
            << QByteArray(R"({"name": "a", "load": "abc"})") << 0 << 0 << false;
        QTest::newRow("load negative")
            << QByteArray(R"({"name": "a", "load": -5.7})") << -5 << 0 << false;
        QTest::newRow("load huge") << QByteArray(R"({"name": "a", "load": 1e300})")
                                   << std::numeric_limits<int>::max() << 0 << false;
        QTest::newRow("load very negative") << QByteArray(R"({"name": "a", "load": -1e300})")
                                            << std::numeric_limits<int>::min() << 0 << false;
        QTest::newRow("country missing")
            << QByteArray(R"({"name": "a", "load": 3})") << 3 << 0 << false;
        QTest::newRow("country id text")
            << QByteArray(R"({"name": "a", "country": {"id": "7", "code": "x"}})") << 0 << 0
            << false;
        QTest::newRow("country id fraction")
            << QByteArray(R"({"name": "a", "country": {"id": 7.9}})") << 0 << 7 << false;
        QTest::newRow("ovpn null")
            << QByteArray(R"({"name": "a", "config": {"ovpn": null}})") << 0 << 0 << false;
        QTest::newRow("ovpn false still present")
            << QByteArray(R"({"name": "a", "config": {"ovpn": false}})") << 0 << 0 << true;
        QTest::newRow("nested nulls")
            << QByteArray(R"({"name": null, "country": null, "config": null, "load": null})") << 0
            << 0 << false;
    }
    void serverFieldsOfWrongTypeReadAsAbsent()
    {
        QFETCH(QByteArray, element);
        QFETCH(int, load);
        QFETCH(int, countryId);
        QFETCH(bool, ovpn);
        const ServerListGettingResult list = parseList("{\"data\": [" + element + "]}");
        QCOMPARE(list.status, 0);
        QCOMPARE(list.serversByCountry.size(), 1);
        const VpnServerInformation server = list.serversByCountry.first().first();
        QCOMPARE(server.load, load);
        QCOMPARE(server.countryId, countryId);
        QCOMPARE(server.hasOvpnConfig, ovpn);
    }

    void unreadableServerListsAreStatus4AndEmpty_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("data number") << QByteArray(R"({"data": 5})");
        QTest::newRow("data object") << QByteArray(R"({"data": {"name": "a"}})");
        QTest::newRow("element not an object") << QByteArray(R"({"data": [{"name": "a"}, 3]})");
        QTest::newRow("country of wrong type")
            << QByteArray(R"({"data": [{"name": "a", "country": "de"}]})");
        QTest::newRow("config of wrong type")
            << QByteArray(R"({"data": [{"name": "a", "config": ["h"]}]})");
    }
    void unreadableServerListsAreStatus4AndEmpty()
    {
        QFETCH(QByteArray, json);
        const ServerListGettingResult list = parseList(json);
        QCOMPARE(list.status, 4);
        QVERIFY(list.serversByCountry.isEmpty());
        QVERIFY(list.countriesById.isEmpty());
        QVERIFY(list.countriesByCode.isEmpty());
    }

    void serverListEdges()
    {
        const ServerListGettingResult error = parseList(R"({"error": "x", "message": "down"})");
        QCOMPARE(error.status, 1);
        QCOMPARE(error.message, QString("down"));
        QVERIFY(error.serversByCountry.isEmpty());

        const ServerListGettingResult noData = parseList("{}");
        QCOMPARE(noData.status, 0);
        QVERIFY(noData.serversByCountry.isEmpty());

        ServerListGettingResult notObject;
        ReplyParser::parseServersListJson(QJsonDocument::fromJson("[1]"), accountWithStatus(0),
                                          notObject);
        QCOMPARE(notObject.status, 4);
    }

    void ipReply_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("ip");
        QTest::addColumn<bool>("isProtected");
        QTest::addColumn<QString>("country");
        QTest::newRow("upper-case code")
            << QByteArray(R"({"ip": "192.0.2.7", "protected": true, "country_code": "DE"})") << 0
            << "192.0.2.7" << true << "de";
        QTest::newRow("protected absent")
            << QByteArray(R"({"ip": "192.0.2.7", "country_code": "Fr"})") << 0 << "192.0.2.7"
            << false << "fr";
        QTest::newRow("protected of wrong type")
            << QByteArray(R"({"ip": 5, "protected": "yes", "country_code": null})") << 0 << ""
            << false << "";
        QTest::newRow("error") << QByteArray(R"({"error": "rate_limited", "protected": true})") << 1
                               << "" << false << "";
        QTest::newRow("not json") << QByteArray("<html>") << 4 << "" << false << "";
        QTest::newRow("empty") << QByteArray() << 2 << "" << false << "";
    }
    void ipReply()
    {
        QFETCH(QByteArray, body);
        QFETCH(int, status);
        QFETCH(QString, ip);
        QFETCH(bool, isProtected);
        QFETCH(QString, country);
        const IpGettingResult result = ReplyParser::processReceiveIpDataNewVersion(body);
        QCOMPARE(result.status, status);
        QCOMPARE(result.ip, ip);
        QCOMPARE(result.isProtected, isProtected);
        QCOMPARE(result.countryCode, country);
    }

    void versionReply_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("versionInt");
        QTest::addColumn<QString>("version");
        const QByteArray newer = R"({"data": {"version": "1.3", "version_int": 13002, )"
                                 R"("url": "https://u", "changelog": "c"}})";
        QTest::newRow("newer") << newer << 0 << 13002 << "1.3";
        QTest::newRow("empty data: no update") << QByteArray(R"({"data": {}})") << 5 << 0 << "";
        QTest::newRow("no data") << QByteArray(R"({})") << 5 << 0 << "";
        QTest::newRow("error without data")
            << QByteArray(R"({"error": "x", "message": "m"})") << 5 << 0 << "";
        QTest::newRow("data of wrong type") << QByteArray(R"({"data": 5})") << 4 << 0 << "";
        QTest::newRow("version_int text")
            << QByteArray(R"({"data": {"version": "2", "version_int": "abc"}})") << 0 << 0 << "2";
        QTest::newRow("not json") << QByteArray("{") << 4 << 0 << "";
        QTest::newRow("empty") << QByteArray() << 2 << 0 << "";
    }
    void versionReply()
    {
        QFETCH(QByteArray, body);
        QFETCH(int, status);
        QFETCH(int, versionInt);
        QFETCH(QString, version);
        const LastVersionGettingResult result = ReplyParser::parseLastVersion(body);
        QCOMPARE(result.status, status);
        QCOMPARE(result.versionInt, versionInt);
        QCOMPARE(result.version, version);
        if (status == 0 && versionInt == 13002) {
            QCOMPARE(result.url, QString("https://u"));
            QCOMPARE(result.changelog, QString("c"));
        }
    }
};

TAVERO_TEST_GUILESS_MAIN(TestReplyParser)
#include "tst_replyparser.moc"
