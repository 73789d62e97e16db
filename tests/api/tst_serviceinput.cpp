// What the service client makes of what it is given, without a service: addresses from the
// environment, CA files, no service at all, and reply bodies. Each parser row renders what one
// parser made of one body as a short text, so a row states the whole outcome: status, then the
// fields the callers use.

#include "api/replyparser.h"
#include "api/serverapi.h"
#include "api/servicetrust.h"
#include "support/messagecapture.h"
#include "support/testmain.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTemporaryDir>
#include <functional>
#include <limits>

using tavero::Endpoints;
using tavero::ReplyParser;
using tavero::ServerApi;
using tavero::test::MessageCapture;

namespace {

const QByteArray testRoot = "-----BEGIN CERTIFICATE-----\n"
                            "MIIBjjCCATOgAwIBAgIUGdqiE0cw+SY5/xkxLtSFcK7JUoswCgYIKoZIzj0EAwIw\n"
                            "GzEZMBcGA1UEAwwQVGF2ZXJvIFRlc3QgUm9vdDAgFw0yNjExMjIyMDEyMTdaGA8y\n"
                            "MTI2MTAyOTIwMTIxN1owGzEZMBcGA1UEAwwQVGF2ZXJvIFRlc3QgUm9vdDBZMBMG\n"
                            "ByqGSM49AgEGCCqGSM49AwEHA0IABJxtSymzq8H7oe0r7NykTr/dzAeL+hsTXYeh\n"
                            "nsP424/4GAyCbucil3nDrdNhNikn/9JshL7QkCGdrAbJWVZ4W/SjUzBRMB0GA1Ud\n"
                            "DgQWBBQ43LNdJzvUJtOHwuxcQpPh3IpcLzAfBgNVHSMEGDAWgBQ43LNdJzvUJtOH\n"
                            "wuxcQpPh3IpcLzAPBgNVHRMBAf8EBTADAQH/MAoGCCqGSM49BAMCA0kAMEYCIQDV\n"
                            "JrXQhj8c/l5Gl93/UPc0HLF9RYvaq//4zC1nefNLMwIhAIIVmxSASn57Sed1aj8j\n"
                            "c0dYlx+aFH9MlfZbfLfz5f/j\n"
                            "-----END CERTIFICATE-----\n";

// The CAs a request to `url` would trust.
QList<QSslCertificate> trustFor(const QString& url)
{
    QNetworkRequest request{QUrl(url)};
    tavero::ServiceTrust::apply(request);
    return request.sslConfiguration().caCertificates();
}

QString withStatus(const RequestResult& result, const QString& fields)
{
    const QString head = result.message.isEmpty()
                             ? QString::number(result.status)
                             : QStringLiteral("%1 \"%2\"").arg(result.status).arg(result.message);
    return fields.isEmpty() ? head : head + QLatin1Char(' ') + fields;
}

QString readLogin(const QByteArray& body)
{
    LoginResult result;
    QJsonDocument document;
    if (ReplyParser::tryParseJson(body, document, result))
        ReplyParser::readLogin(document, result);
    return withStatus(result, QStringLiteral("token=") + result.token);
}

QString readAccount(const QByteArray& body)
{
    AccountInfoGettingResult a;
    QJsonDocument document;
    if (ReplyParser::tryParseJson(body, document, a))
        ReplyParser::readAccountInfo(document, a);
    return withStatus(a, QStringList{a.email, a.vpnUsername, a.vpnPassword, a.sharedKey,
                                     a.caCertificate, a.publicKey, a.privateKey}
                             .join(QLatin1Char('/')));
}

// Countries as id:code:name, each with its servers as name:load:host and the flags
// r(ecommended), o(penvpn), a(ccount data).
QString readList(const QByteArray& body, int accountStatus = 0)
{
    AccountInfoGettingResult account;
    account.status = accountStatus;
    account.vpnUsername = QStringLiteral("user");
    ServerListGettingResult list;
    QJsonDocument document;
    if (ReplyParser::tryParseJson(body, document, list))
        ReplyParser::parseServersListJson(document, account, list);
    QStringList countries;
    for (auto it = list.serversByCountry.cbegin(); it != list.serversByCountry.cend(); ++it) {
        const CountryInformation country = list.countriesById.value(it.key());
        if (list.countriesByCode.value(country.code).id != country.id || !country.isAvailable)
            return QStringLiteral("inconsistent country maps");
        QStringList servers;
        for (const VpnServerInformation& s : it.value()) {
            if (s.countryId != it.key() || !s.isAvailable ||
                s.vpnUsername != (s.hasAccountData ? "user" : ""))
                return QStringLiteral("inconsistent server");
            servers << QStringLiteral("%1:%2:%3%4%5%6")
                           .arg(s.name)
                           .arg(s.load)
                           .arg(s.host, s.isRecommended ? "r" : "", s.hasOvpnConfig ? "o" : "",
                                s.hasAccountData ? "a" : "");
        }
        countries << QStringLiteral("%1:%2:%3[%4]")
                         .arg(country.id)
                         .arg(country.code, country.name, servers.join(QLatin1Char(' ')));
    }
    return withStatus(list, countries.join(QLatin1Char(' ')));
}

QString readIp(const QByteArray& body)
{
    const IpGettingResult ip = ReplyParser::processReceiveIpDataNewVersion(body);
    return withStatus(
        ip, QStringList{ip.ip, ip.isProtected ? "protected" : "open", ip.countryCode}.join(
                QLatin1Char('|')));
}

QString readVersion(const QByteArray& body)
{
    const LastVersionGettingResult v = ReplyParser::parseLastVersion(body);
    return withStatus(
        v, QStringList{v.version, QString::number(v.versionInt), v.url, v.changelog}.join(
               QLatin1Char('|')));
}

QString readRefresh(const QByteArray& body)
{
    const std::optional<QString> token = ReplyParser::refreshedToken(body);
    return (ReplyParser::isTokenExpired(body) ? QStringLiteral("expired ") : QString()) +
           (token ? QStringLiteral("renews with \"%1\"").arg(*token)
                  : QStringLiteral("no renewal"));
}

} // namespace

class TestServiceInput : public QObject {
    Q_OBJECT

    void clearOverrides()
    {
        for (const char* name :
             {"TAVERO_API_URL", "TAVERO_IPINFO_URL", "TAVERO_PROBE_URL", "TAVERO_CA_FILE"})
            qunsetenv(name);
    }

private slots:
    void init() { clearOverrides(); }
    void cleanupTestCase() { clearOverrides(); }

    // An address that is refused leaves the compiled-in one and a warning naming the variable.
    void overrides_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QString>("address"); // empty: refused
        const auto row = [](const char* name, const char* variable, const char* value,
                            const char* address) {
            QTest::newRow(name) << QByteArray(variable) << QByteArray(value)
                                << QString::fromLatin1(address);
        };
        row("api", "TAVERO_API_URL", "https://127.0.0.1:8443", "https://127.0.0.1:8443");
        row("api with trailing slashes", "TAVERO_API_URL", " https://localhost:1/v2// ",
            "https://localhost:1/v2");
        row("plain-HTTP api", "TAVERO_API_URL", "http://127.0.0.1:8080", "");
        row("ip information", "TAVERO_IPINFO_URL", "https://127.0.0.1:9/json",
            "https://127.0.0.1:9/json");
        row("plain-HTTP ip information", "TAVERO_IPINFO_URL", "http://127.0.0.1:9/json", "");
        row("probe", "TAVERO_PROBE_URL", "http://127.0.0.1:8080/", "http://127.0.0.1:8080/");
        row("probe of another scheme", "TAVERO_PROBE_URL", "ftp://127.0.0.1/", "");
    }
    void overrides()
    {
        QFETCH(QByteArray, variable);
        QFETCH(QByteArray, value);
        QFETCH(QString, address);
        qputenv(variable.constData(), value);
        MessageCapture messages;
        const Endpoints endpoints = Endpoints::fromEnvironment();
        Endpoints expected = Endpoints::defaults();
        QString& changed = variable == "TAVERO_API_URL"      ? expected.apiBaseUrl
                           : variable == "TAVERO_IPINFO_URL" ? expected.ipInfoUrl
                                                             : expected.probeUrl;
        if (!address.isEmpty())
            changed = address;
        QCOMPARE(QStringList({endpoints.apiBaseUrl, endpoints.ipInfoUrl, endpoints.probeUrl}),
                 QStringList({expected.apiBaseUrl, expected.ipInfoUrl, expected.probeUrl}));
        QCOMPARE(messages.contains(QtWarningMsg, QString::fromLatin1(variable)), address.isEmpty());
    }

    // The file's CAs are the trust for the service's hosts and ports (once each, however many
    // clients are built) and nowhere else: the default configuration, and with it every other
    // host, keeps the system's trust without reading its store. A file that cannot be read or
    // holds no PEM certificate is a warning and trusts nothing.
    void caFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("ca.pem");
        Endpoints endpoints = Endpoints::defaults();
        endpoints.apiBaseUrl = "https://Service.test:8443";
        endpoints.caFile = path;
        for (const QByteArray& content : {QByteArray(), QByteArray("hello")}) {
            QFile file(path);
            if (!content.isEmpty() && (!file.open(QIODevice::WriteOnly) || !file.write(content)))
                QFAIL("cannot write the bundle");
            file.close();
            MessageCapture messages;
            ServerApi api(endpoints);
            QVERIFY(messages.contains(QtWarningMsg, "TAVERO_CA_FILE"));
            // The platform's own trust, whatever it holds (Windows lists its store here).
            QCOMPARE(trustFor("https://service.test:8443/user"),
                     QSslConfiguration::defaultConfiguration().caCertificates());
        }

        QFile bundle(path);
        QVERIFY(bundle.open(QIODevice::WriteOnly | QIODevice::Truncate));
        bundle.write(testRoot);
        bundle.close();
        const QSslCertificate root = QSslCertificate::fromData(testRoot).first();
        qputenv("TAVERO_CA_FILE", QFile::encodeName(path));
        QCOMPARE(Endpoints::fromEnvironment().caFile, path);
        {
            ServerApi first(endpoints);
        }
        ServerApi second(endpoints);
        QCOMPARE(trustFor("https://service.test:8443/user"), QList<QSslCertificate>{root});
        for (const char* other : {"https://service.test/", "https://other.test:8443/"})
            QVERIFY2(!trustFor(other).contains(root), other);
        QVERIFY(!QSslConfiguration::defaultConfiguration().caCertificates().contains(root));
    }

    void unreachableServiceGivesNoInternetEverywhere()
    {
        QTcpServer probe; // a port that was free a moment ago refuses connections
        QVERIFY(probe.listen(QHostAddress::LocalHost));
        const QString port = QString::number(probe.serverPort());
        probe.close();
        const Endpoints endpoints{"https://127.0.0.1:" + port,
                                  "https://127.0.0.1:" + port + "/json",
                                  "http://127.0.0.1:" + port + "/", QString()};
        ServerApi::resetSharedCaches();
        MessageCapture messages;
        ServerApi api(endpoints);
        api.setToken("t");
        QSignalSpy logout(&api.logoutBroadcaster(), &LogoutBroadcaster::needLogout);

        const LoginResult login = api.loginByEmail("a@example.org", "p");
        QCOMPARE(login.message, QString("No Internet"));
        QCOMPARE(api.token(), QString("t"));
        const QVector<int> statuses{login.status,
                                    api.receiveAccountInfo().status,
                                    api.receiveServerList().status,
                                    api.receiveRecommendedServerList("192.0.2.1").status,
                                    api.receiveIp().status,
                                    api.receiveLastVersion().status};
        QCOMPARE(statuses, QVector<int>(6, 2));
        QCOMPARE(api.receiveFlagPicture("de", FlagPictureSize::Small), QByteArray());
        QVERIFY(!api.isThereInternet());
        QCOMPARE(logout.count(), 0);
        QVERIFY(messages.contains(QtDebugMsg, "reequest https://127.0.0.1:" + port +
                                                  "/hotspots/recommended?ip=192.0.2.1"));
    }

    void replies_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("read");
        const auto row = [](const char* name, const char* kind, const QByteArray& body,
                            const QString& read) {
            QTest::newRow(name) << QString::fromLatin1(kind) << body << read;
        };

        // Shared by every reply: transport, JSON, error keys.
        row("empty body", "ip", "", "2 \"No Internet\" |open|");
        row("not json, Latin-1 message", "login", "<p>\xe9t\xe9",
            QString::fromLatin1("4 \"<p>\xe9t\xe9\" token="));
        row("message alone is an error", "login", R"({"message": "x", "data": {"token": "t"}})",
            "1 \"x\" token=");
        row("error alone: empty message", "login", R"({"error": "token_expired"})", "1 token=");
        row("top-level array reads as an empty object", "ip", "[1, 2]", "0 |open|");

        row("login", "login", R"({"data": {"token": "abc", "extra": 1}})", "0 token=abc");

        const QByteArray account = R"({"data": {"email": "e",
            "appp": {"data": {"username": "u", "password": "p", "shared_key": "k"}},
            "vpn": {"data": {"ca": "C", "pbk": "B", "prk": "R"}}}})";
        row("account", "account", account, "0 e/u/p/k/C/B/R");
        row("account appp data of wrong type keeps the certificates", "account",
            R"({"data": {"email": "e", "appp": {"data": []}, "vpn": {"data": {"ca": "C", "pbk": "B", "prk": "R"}}}})",
            "0 e////C/B/R");
        row("account error", "account", R"({"error": "x", "message": "m", "data": {"email": "e"}})",
            "1 \"m\" //////");

        row("list grouped by country id, reply order kept", "list", R"({"data": [
            {"name": "de-1", "is_recom": true, "load": 37.9,
             "country": {"id": 4, "code": "de", "name": "Germany"},
             "config": {"host": "h1", "ovpn": {"udp": 1194}}},
            {"name": "nl-1", "load": 12, "country": {"id": 2, "code": "nl", "name": "Netherlands"},
             "config": {"host": "h2"}},
            {"name": "de-2", "is_recom": false, "load": 80,
             "country": {"id": 4, "code": "de", "name": "Germany"}, "config": {"host": "h3", "ovpn": false}}]})",
            "0 2:nl:Netherlands[nl-1:12:h2a] 4:de:Germany[de-1:37:h1roa de-2:80:h3oa]");
        row("list odd elements read one by one", "list",
            R"({"data": [{"name": "a", "country": {"id": 1, "code": "x", "name": "X"}}, 3,
                         {"name": "b", "country": "de", "config": ["h"]}]})",
            "0 0::[:0:a b:0:a] 1:x:X[a:0:a]");
        row("list numbers truncated and clamped", "list",
            R"({"data": [{"name": "a", "load": -5.7, "country": {"id": 7.9, "code": "x"}},
                         {"name": "b", "load": 1e300}, {"name": "c", "load": -1e300}]})",
            QStringLiteral("0 0::[b:%1:a c:%2:a] 7:x:[a:-5:a]")
                .arg(std::numeric_limits<int>::max())
                .arg(std::numeric_limits<int>::min()));
        row("list error", "list", R"({"error": "x", "message": "down", "data": [{"name": "a"}]})",
            "1 \"down\"");
        row("list from a failed account: no credentials", "list failed account",
            R"({"data": [{"name": "a"}]})", "0 0::[a:0:]");

        row("ip upper-case code", "ip",
            R"({"ip": "192.0.2.7", "protected": true, "country_code": "DE"})",
            "0 192.0.2.7|protected|de");
        row("ip error", "ip", R"({"error": "rate_limited", "protected": true})", "1 |open|");

        row("version", "version",
            R"({"data": {"version": "1.3", "version_int": 13002, "url": "u", "changelog": "c"}})",
            "0 1.3|13002|u|c");
        row("version error without data: no update", "version", R"({"error": "x", "message": "m"})",
            "5 |0||");

        row("refresh", "refresh", R"({"data": {"token": "new"}})", "renews with \"new\"");
        row("refresh without token", "refresh", R"({"data": {}})", "no renewal");
        row("refresh error", "refresh", R"({"error": "token_expired", "data": {"token": "x"}})",
            "expired no renewal");
        row("expiry named in message only", "refresh", R"({"message": "token_expired"})",
            "no renewal");
    }
    void replies()
    {
        QFETCH(QString, kind);
        QFETCH(QByteArray, body);
        QFETCH(QString, read);
        const QHash<QString, std::function<QString(const QByteArray&)>> readers{
            {"login", readLogin},
            {"account", readAccount},
            {"list", [](const QByteArray& b) { return readList(b); }},
            {"list failed account", [](const QByteArray& b) { return readList(b, 1); }},
            {"ip", readIp},
            {"version", readVersion},
            {"refresh", readRefresh}};
        QCOMPARE(readers.value(kind)(body), read);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestServiceInput)
#include "tst_serviceinput.moc"
