// Addresses, trusted CAs and process-wide flags of the service client, and its answers when the
// service cannot be reached at all.

#include "api/serverapi.h"
#include "api/servicetrust.h"
#include "support/messagecapture.h"
#include "support/testmain.h"

#include <QNetworkRequest>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTemporaryDir>

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

// The CAs a request to `url` would trust.
QList<QSslCertificate> trustFor(const QString& url)
{
    QNetworkRequest request{QUrl(url)};
    tavero::ServiceTrust::apply(request);
    return request.sslConfiguration().caCertificates();
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
};

TAVERO_TEST_GUILESS_MAIN(TestEndpoints)
#include "tst_endpoints.moc"
