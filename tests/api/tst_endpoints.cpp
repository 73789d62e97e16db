// Addresses, trusted CAs and process-wide flags of the service client, and its answers when the
// service cannot be reached at all.

#include "api/serverapi.h"
#include "support/messagecapture.h"
#include "support/testmain.h"

#include <QSslConfiguration>
#include <QTcpServer>
#include <QTemporaryFile>

using tavero::Endpoints;
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

int trustedCopies(const QSslCertificate& certificate)
{
    return QSslConfiguration::defaultConfiguration().caCertificates().count(certificate);
}

} // namespace

class TestEndpoints : public QObject {
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

    void overrides_data()
    {
        QTest::addColumn<QByteArray>("variable");
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QString>("api");
        QTest::addColumn<QString>("ipinfo");
        QTest::addColumn<QString>("probe");
        const Endpoints d = Endpoints::defaults();
        QTest::newRow("api") << QByteArray("TAVERO_API_URL") << QByteArray("https://127.0.0.1:8443")
                             << "https://127.0.0.1:8443" << d.ipInfoUrl << d.probeUrl;
        QTest::newRow("api with trailing slashes")
            << QByteArray("TAVERO_API_URL") << QByteArray(" https://localhost:1/v2// ")
            << "https://localhost:1/v2" << d.ipInfoUrl << d.probeUrl;
        QTest::newRow("plain-HTTP api refused")
            << QByteArray("TAVERO_API_URL") << QByteArray("http://127.0.0.1:8080") << d.apiBaseUrl
            << d.ipInfoUrl << d.probeUrl;
        QTest::newRow("no host refused") << QByteArray("TAVERO_API_URL") << QByteArray("https://")
                                         << d.apiBaseUrl << d.ipInfoUrl << d.probeUrl;
        QTest::newRow("ip information")
            << QByteArray("TAVERO_IPINFO_URL") << QByteArray("https://127.0.0.1:9/json")
            << d.apiBaseUrl << "https://127.0.0.1:9/json" << d.probeUrl;
        QTest::newRow("plain-HTTP ip information refused")
            << QByteArray("TAVERO_IPINFO_URL") << QByteArray("http://127.0.0.1:9/json")
            << d.apiBaseUrl << d.ipInfoUrl << d.probeUrl;
        QTest::newRow("probe") << QByteArray("TAVERO_PROBE_URL")
                               << QByteArray("http://127.0.0.1:8080/") << d.apiBaseUrl
                               << d.ipInfoUrl << "http://127.0.0.1:8080/";
        QTest::newRow("probe over https")
            << QByteArray("TAVERO_PROBE_URL") << QByteArray("https://127.0.0.1/") << d.apiBaseUrl
            << d.ipInfoUrl << "https://127.0.0.1/";
        QTest::newRow("probe of another scheme refused")
            << QByteArray("TAVERO_PROBE_URL") << QByteArray("ftp://127.0.0.1/") << d.apiBaseUrl
            << d.ipInfoUrl << d.probeUrl;
    }
    void overrides()
    {
        QFETCH(QByteArray, variable);
        QFETCH(QByteArray, value);
        QFETCH(QString, api);
        QFETCH(QString, ipinfo);
        QFETCH(QString, probe);
        qputenv(variable.constData(), value);
        MessageCapture messages;
        const Endpoints endpoints = Endpoints::fromEnvironment();
        QCOMPARE(endpoints.apiBaseUrl, api);
        QCOMPARE(endpoints.ipInfoUrl, ipinfo);
        QCOMPARE(endpoints.probeUrl, probe);
        const bool refused = api == Endpoints::defaults().apiBaseUrl &&
                             ipinfo == Endpoints::defaults().ipInfoUrl &&
                             probe == Endpoints::defaults().probeUrl;
        QCOMPARE(messages.contains(QtWarningMsg, QString::fromLatin1(variable)), refused);
    }

    void caFileIsTrustedOnceBesideTheSystemCas()
    {
        QTemporaryFile bundle;
        QVERIFY(bundle.open());
        bundle.write(testRoot);
        bundle.close();
        const QSslCertificate root = QSslCertificate::fromData(testRoot).first();
        const int systemCas = QSslConfiguration::systemCaCertificates().size();
        QCOMPARE(trustedCopies(root), 0);

        qputenv("TAVERO_CA_FILE", QFile::encodeName(bundle.fileName()));
        const Endpoints endpoints = Endpoints::fromEnvironment();
        QCOMPARE(endpoints.caFile, bundle.fileName());
        {
            ServerApi first(endpoints);
        }
        ServerApi second(endpoints);
        QCOMPARE(trustedCopies(root), 1);
        QCOMPARE(QSslConfiguration::defaultConfiguration().caCertificates().size(), systemCas + 1);
    }

    void unreadableCaFileIsReportedAndIgnored_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("missing") << QByteArray();
        QTest::newRow("not PEM") << QByteArray("hello");
    }
    void unreadableCaFileIsReportedAndIgnored()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        const QString path = dir.filePath("ca.pem");
        if (!content.isEmpty()) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
        }
        const QList<QSslCertificate> before =
            QSslConfiguration::defaultConfiguration().caCertificates();
        MessageCapture messages;
        Endpoints endpoints = Endpoints::defaults();
        endpoints.caFile = path;
        ServerApi api(endpoints);
        QVERIFY(messages.contains(QtWarningMsg, "TAVERO_CA_FILE"));
        QCOMPARE(QSslConfiguration::defaultConfiguration().caCertificates(), before);
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
        QCOMPARE(login.status, 2);
        QCOMPARE(login.message, QString("No Internet"));
        QCOMPARE(api.token(), QString("t"));
        QCOMPARE(api.receiveAccountInfo().status, 2);
        QCOMPARE(api.receiveServerList().status, 2);
        QCOMPARE(api.receiveRecommendedServerList("192.0.2.1").status, 2);
        QCOMPARE(api.receiveIp().status, 2);
        QCOMPARE(api.receiveLastVersion().status, 2);
        QCOMPARE(api.receiveFlagPicture("de", FlagPictureSize::Small), QByteArray());
        QVERIFY(!api.isThereInternet());
        QCOMPARE(logout.count(), 0);
        QVERIFY(messages.contains(QtDebugMsg, "reequest https://127.0.0.1:" + port +
                                                  "/hotspots/recommended?ip=192.0.2.1"));
        // The transport diagnostics of a failed exchange.
        for (const char* line : {"OpenSSL was used for the Qt build ", "SSL is supported ",
                                 "Version I have ", "!!!!!"})
            QVERIFY2(messages.contains(QtDebugMsg, line), line);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestEndpoints)
#include "tst_endpoints.moc"
