#include "api/serverapi.h"
#include "app/settings.h"
#include "manager/serverlistqueries.h"
#include "platform/nativeplatform.h"
#include "support/devservice.h"
#include "support/standinlog.h"
#include "support/testenvironment.h"
#include "support/testmain.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <csignal>
#include <memory>
#include <sys/types.h>

using tavero::ServerListQueries;
using tavero::test::DevService;

namespace {

const QString cli = qEnvironmentVariable("TAVERO_TEST_BIN_DIR") + QStringLiteral("/tavero-cli");

// The JSON line of `output` from `from` on that contains `needle`; empty when none does.
QJsonObject lineWith(const QByteArray& output, const QByteArray& needle, int from = 0)
{
    const int at = output.indexOf(needle, from);
    if (at < 0)
        return {};
    const int start = output.lastIndexOf('\n', at) + 1;
    return QJsonDocument::fromJson(output.mid(start, output.indexOf('\n', at) - start)).object();
}

} // namespace

// tavero-cli as a script uses it, against the development service with the OpenVPN stand-in:
// log in, list, connect to a chosen country, survive a tunnel break, stop cleanly.
class TestCliConnect : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void loginListConnectBreakStop();

private:
    // Runs a command to its end; its exit code (-1: no normal end) and its last JSON line.
    static int runToEnd(const QStringList& arguments, QJsonObject& result,
                        const QByteArray& input = {});
    // The country tavero-cli should pick a server with OpenVPN in, and that server's name.
    bool chooseOpenVpnCountry(QString& code, QString& server);

    std::unique_ptr<DevService> m_service;
    tavero::test::StandInLog m_standIns; // kills what is left of them, whatever failed
};

void TestCliConnect::initTestCase()
{
    if (!tavero::NativePlatform::isRunningAsAdministrator())
        QSKIP("OpenVPN is offered only with administrator rights (run as root)");
    QVERIFY(QFile::exists(cli));
    QVERIFY(QFile::exists(qEnvironmentVariable("TAVERO_TEST_BIN_DIR") + "/bin/openvpn"));
    m_service = std::make_unique<DevService>();
    QVERIFY2(m_service->isRunning(), qPrintable(m_service->errorText()));
    // Inherited by every tavero-cli started here; TAVERO_KEEP_NETWORK=1 (the test default) keeps
    // the platform from ever touching the host's interfaces.
    m_service->exportEnvironment();
    qputenv("TAVERO_FAKE_OPENVPN_TUNNEL",
            QString("%1:%2").arg(m_service->tunnelHost()).arg(m_service->tunnelPort()).toUtf8());
    QCOMPARE(qgetenv("TAVERO_KEEP_NETWORK"), QByteArray("1"));

    // The stand-in's scenario is OpenVPN over UDP; the kill switch stays off (the default).
    tavero::test::TestEnvironment::clearSettings();
    tavero::Settings settings;
    settings.setProtocolTypes(OvpnUdp);
    QVERIFY(!settings.isKillSwitch());
}

int TestCliConnect::runToEnd(const QStringList& arguments, QJsonObject& result,
                             const QByteArray& input)
{
    QProcess run;
    run.start(cli, QStringList{"--json"} + arguments);
    run.write(input);
    run.closeWriteChannel();
    const bool ended = run.waitForFinished(60000) && run.exitStatus() == QProcess::NormalExit;
    const QList<QByteArray> lines = run.readAllStandardOutput().trimmed().split('\n');
    result = QJsonDocument::fromJson(lines.last()).object();
    if (!ended || run.exitCode() != 0)
        qWarning("tavero-cli %s: %s", qPrintable(arguments.join(' ')),
                 run.readAllStandardError().constData());
    return ended ? run.exitCode() : -1;
}

bool TestCliConnect::chooseOpenVpnCountry(QString& code, QString& server)
{
    // Ask the service what tavero-cli will see, to find a country whose chosen server has an
    // OpenVPN configuration.
    tavero::ServerApi::resetSharedCaches();
    tavero::ServerApi api(m_service->endpoints());
    const DevService::Account account = m_service->account(0);
    if (api.loginByEmail(account.email, account.password).status != RequestResult::Ok)
        return false;
    const ServerListGettingResult all = api.receiveServerList();
    const ServerListGettingResult recommended = api.receiveRecommendedServerList(QString());
    const QString current = tavero::Settings().serverName();
    for (auto it = all.countriesByCode.cbegin(); it != all.countriesByCode.cend(); ++it) {
        QString name = ServerListQueries::bestServerNameByCountryCode(recommended, it.key());
        if (name.isEmpty())
            name = ServerListQueries::bestServerNameByCountryCode(all, it.key());
        for (const VpnServerInformation& candidate : all.serversByCountry.value(it->id)) {
            if (candidate.name == name && candidate.hasOvpnConfig && name != current) {
                code = it.key();
                server = name;
                return true;
            }
        }
    }
    return false;
}

void TestCliConnect::loginListConnectBreakStop()
{
    const DevService::Account account = m_service->account(0);
    QJsonObject result;

    // Log in: the password comes on standard input.
    QCOMPARE(runToEnd({"login", account.email}, result, account.password.toUtf8() + "\n"), 0);
    QCOMPARE(result.value("ok").toBool(), true);
    QCOMPARE(result.value("email").toString(), account.email);

    // The list: recommended countries first, every country with a load text.
    QCOMPARE(runToEnd({"servers"}, result), 0);
    QVERIFY(!result.value("recommended").toArray().isEmpty());
    QVERIFY(result.value("all").toArray().size() >= result.value("recommended").toArray().size());

    QString country;
    QString server;
    QVERIFY(chooseOpenVpnCountry(country, server));

    // Connect to that country and stay.
    QProcess connect;
    // A process group of its own, as a terminal gives a command it runs.
    connect.start("setsid", {cli, "--json", "connect", "--country", country.toUpper()});
    QByteArray output;
    const auto waitFor = [&](const QByteArray& needle, int timeoutMs, int from = 0) {
        const QDeadlineTimer deadline(timeoutMs);
        while ((output += connect.readAllStandardOutput()).indexOf(needle, from) < 0) {
            if (deadline.hasExpired() || connect.state() == QProcess::NotRunning)
                return false;
            connect.waitForReadyRead(200);
        }
        return true;
    };
    const QByteArray connected = "\"mode\":\"Connected\"";
    QVERIFY2(waitFor(connected, 60000), output.constData());
    QCOMPARE(lineWith(output, connected).value("server").toString(), server);
    QCOMPARE(lineWith(output, connected).value("protocol").toString(), "Open VPN UDP");
    QCOMPARE(tavero::Settings().serverName(), server);

    // Verified: the service sees the traffic as protected.
    QCOMPARE(runToEnd({"status"}, result), 0);
    QCOMPARE(result.value("protected").toBool(), true);
    QCOMPARE(m_service->openTunnels().size(), 1);

    // A break from the service: the tunnel is re-established without anyone asking.
    const int before = output.size();
    QVERIFY(m_service->dropTunnels());
    QVERIFY2(waitFor("\"event\":\"reestablishing\"", 30000, before), output.constData());
    const QByteArray reestablished = "\"event\":\"reestablished\"";
    QVERIFY2(waitFor(reestablished, 60000, before), output.constData());
    QCOMPARE(lineWith(output, reestablished, before).value("success").toBool(), true);
    QVERIFY(output.indexOf(connected, before) >= 0);
    QCOMPARE(runToEnd({"status"}, result), 0);
    QCOMPARE(result.value("protected").toBool(), true);
    QVERIFY(m_standIns.starts().size() >= 2);

    // Ctrl-C in the terminal (SIGINT to the whole process group): disconnect, say so, end with
    // success, leave no OpenVPN behind, and start no new tunnel on the way out.
    const int stopAt = output.size();
    const int starts = m_standIns.starts().size();
    QVERIFY(::kill(-pid_t(connect.processId()), SIGINT) == 0);
    QVERIFY(connect.waitForFinished(30000));
    output += connect.readAllStandardOutput();
    QVERIFY(output.indexOf("\"event\":\"stopping\"", stopAt) >= 0);
    QVERIFY(output.indexOf("\"mode\":\"Disconnected\"", stopAt) >= 0);
    QVERIFY2(output.indexOf("reestablish", stopAt) < 0, output.constData() + stopAt);
    QCOMPARE(m_standIns.starts().size(), starts);
    QCOMPARE(connect.exitCode(), 0);
    QCOMPARE(m_standIns.live(), QVector<qint64>());
    // The service notices the stand-in's closed control connection on its own thread.
    QTRY_VERIFY(m_service->openTunnels().isEmpty());
    QCOMPARE(runToEnd({"status"}, result), int(9)); // not protected any more
}

TAVERO_TEST_GUILESS_MAIN(TestCliConnect)
#include "tst_cliconnect.moc"
