#include "api/serverapi.h"
#include "app/settings.h"
#include "manager/serverlistqueries.h"
#include "platform/nativeplatform.h"
#include "support/devservice.h"
#include "support/testenvironment.h"
#include "support/testmain.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <csignal>
#include <memory>
#include <sys/types.h>

using tavero::ServerListQueries;
using tavero::test::DevService;

namespace {

// One running tavero-cli whose JSON lines are collected as they arrive.
class CliRun {
public:
    CliRun(const QProcessEnvironment& environment, const QStringList& arguments)
    {
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::SeparateChannels);
        m_process.start(qEnvironmentVariable("TAVERO_TEST_BIN_DIR") + QStringLiteral("/tavero-cli"),
                        arguments);
    }
    ~CliRun()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.kill();
            m_process.waitForFinished(5000);
        }
    }

    QProcess& process() { return m_process; }

    // Waits until a line satisfies `match` (looking at lines already read first); the matching
    // line, or an empty object when `timeoutMs` passes or the program ends first.
    QJsonObject waitFor(const std::function<bool(const QJsonObject&)>& match, int timeoutMs)
    {
        const QDeadlineTimer deadline(timeoutMs);
        for (;;) {
            while (m_next < m_lines.size()) {
                const QJsonObject line = m_lines[m_next++];
                if (match(line))
                    return line;
            }
            if (deadline.hasExpired())
                return {};
            if (!readMore(int(qMin<qint64>(deadline.remainingTime(), 200))) &&
                m_process.state() == QProcess::NotRunning)
                return {};
        }
    }

    // Waits for the end; the exit code, or -1 when it did not end in time.
    int finish(int timeoutMs)
    {
        if (!m_process.waitForFinished(timeoutMs))
            return -1;
        readMore(0);
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    const QVector<QJsonObject>& lines() const { return m_lines; }
    QString errorText() { return QString::fromUtf8(m_process.readAllStandardError()); }

private:
    bool readMore(int waitMs)
    {
        if (!m_process.canReadLine())
            m_process.waitForReadyRead(waitMs);
        bool any = false;
        while (m_process.canReadLine()) {
            const QByteArray line = m_process.readLine().trimmed();
            const QJsonDocument document = QJsonDocument::fromJson(line);
            m_lines << (document.isObject()
                            ? document.object()
                            : QJsonObject{{QStringLiteral("unparsed"), QString::fromUtf8(line)}});
            any = true;
        }
        return any;
    }

    QProcess m_process;
    QVector<QJsonObject> m_lines;
    int m_next = 0;
};

std::function<bool(const QJsonObject&)> modeNamed(const QString& name)
{
    return [name](const QJsonObject& line) {
        return line.value(QStringLiteral("event")) == QLatin1String("mode") &&
               line.value(QStringLiteral("mode")).toString() == name;
    };
}

std::function<bool(const QJsonObject&)> eventNamed(const QString& name)
{
    return [name](const QJsonObject& line) {
        return line.value(QStringLiteral("event")).toString() == name;
    };
}

bool processAlive(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    // A zombie has ended; only its parent's wait is missing.
    return !status.readAll().contains("State:\tZ");
}

} // namespace

// tavero-cli as a script uses it, against the development service with the OpenVPN stand-in:
// log in, list, connect to a chosen country, survive a tunnel break, stop cleanly.
class TestCliConnect : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanupTestCase();
    void loginListConnectBreakStop();

private:
    QProcessEnvironment cliEnvironment() const;
    int runToEnd(const QStringList& arguments, const QByteArray& input, QJsonObject& result);
    // The country tavero-cli should pick a server with OpenVPN in, and that server's name.
    bool chooseOpenVpnCountry(QString& code, QString& server);
    QVector<qint64> standInPids() const;

    std::unique_ptr<DevService> m_service;
    QTemporaryDir m_dir;
};

void TestCliConnect::initTestCase()
{
    if (!tavero::NativePlatform::isRunningAsAdministrator())
        QSKIP("OpenVPN is offered only with administrator rights (run as root)");
    QVERIFY(QFile::exists(qEnvironmentVariable("TAVERO_TEST_BIN_DIR") + "/tavero-cli"));
    QVERIFY(QFile::exists(qEnvironmentVariable("TAVERO_TEST_BIN_DIR") + "/bin/openvpn"));
    m_service = std::make_unique<DevService>();
    QVERIFY2(m_service->isRunning(), qPrintable(m_service->errorText()));
    QVERIFY(m_dir.isValid());

    // The stand-in's scenario is OpenVPN over UDP; the kill switch stays off (the default), and
    // TAVERO_KEEP_NETWORK=1 keeps the platform from ever touching the host's interfaces.
    tavero::test::TestEnvironment::clearSettings();
    tavero::Settings settings;
    settings.setProtocolTypes(OvpnUdp);
    QVERIFY(!settings.isKillSwitch());
}

void TestCliConnect::cleanupTestCase()
{
    // Never leave a stand-in behind, whatever failed.
    for (const qint64 pid : standInPids()) {
        if (processAlive(pid))
            ::kill(pid_t(pid), SIGKILL);
    }
    m_service.reset();
}

QProcessEnvironment TestCliConnect::cliEnvironment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const tavero::Endpoints endpoints = m_service->endpoints();
    environment.insert(QStringLiteral("TAVERO_API_URL"), endpoints.apiBaseUrl);
    environment.insert(QStringLiteral("TAVERO_IPINFO_URL"), endpoints.ipInfoUrl);
    environment.insert(QStringLiteral("TAVERO_PROBE_URL"), endpoints.probeUrl);
    environment.insert(QStringLiteral("TAVERO_CA_FILE"), endpoints.caFile);
    environment.insert(QStringLiteral("TAVERO_KEEP_NETWORK"), QStringLiteral("1"));
    environment.insert(
        QStringLiteral("TAVERO_FAKE_OPENVPN_TUNNEL"),
        QStringLiteral("%1:%2").arg(m_service->tunnelHost()).arg(m_service->tunnelPort()));
    environment.insert(QStringLiteral("TAVERO_FAKE_OPENVPN_LOG"), m_dir.filePath("openvpn.log"));
    return environment;
}

int TestCliConnect::runToEnd(const QStringList& arguments, const QByteArray& input,
                             QJsonObject& result)
{
    CliRun run(cliEnvironment(), arguments);
    run.process().write(input);
    run.process().closeWriteChannel();
    const int code = run.finish(60000);
    result = run.lines().isEmpty() ? QJsonObject() : run.lines().last();
    if (code != 0)
        qWarning("tavero-cli %s: exit %d: %s", qPrintable(arguments.join(' ')), code,
                 qPrintable(run.errorText()));
    return code;
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

QVector<qint64> TestCliConnect::standInPids() const
{
    QVector<qint64> pids;
    QFile log(m_dir.filePath("openvpn.log"));
    if (!log.open(QIODevice::ReadOnly))
        return pids;
    for (const QByteArray& line : log.readAll().split('\n')) {
        const qint64 pid =
            QJsonDocument::fromJson(line).object().value("pid").toVariant().toLongLong();
        if (pid > 0)
            pids << pid;
    }
    return pids;
}

void TestCliConnect::loginListConnectBreakStop()
{
    const DevService::Account account = m_service->account(0);
    QJsonObject result;

    // Log in: the password comes on standard input.
    QCOMPARE(runToEnd({"--json", "login", account.email}, account.password.toUtf8() + "\n", result),
             0);
    QCOMPARE(result.value("ok").toBool(), true);
    QCOMPARE(result.value("email").toString(), account.email);

    // The list: recommended countries first, every country with a load text.
    QCOMPARE(runToEnd({"--json", "servers"}, {}, result), 0);
    QVERIFY(!result.value("recommended").toArray().isEmpty());
    QVERIFY(result.value("all").toArray().size() >= result.value("recommended").toArray().size());

    QString country;
    QString server;
    QVERIFY(chooseOpenVpnCountry(country, server));

    // Connect to that country and stay.
    CliRun connect(cliEnvironment(), {"--json", "connect", "--country", country.toUpper()});
    const QJsonObject connected = connect.waitFor(modeNamed("Connected"), 60000);
    QVERIFY2(!connected.isEmpty(), qPrintable(connect.errorText()));
    QCOMPARE(connected.value("server").toString(), server);
    QCOMPARE(connected.value("protocol").toString(), QStringLiteral("Open VPN UDP"));
    QCOMPARE(tavero::Settings().serverName(), server);

    // Verified: the service sees the traffic as protected.
    QCOMPARE(runToEnd({"--json", "status"}, {}, result), 0);
    QCOMPARE(result.value("protected").toBool(), true);
    QCOMPARE(m_service->openTunnels().size(), 1);

    // A break from the service: the tunnel is re-established without anyone asking.
    QVERIFY(m_service->dropTunnels());
    QVERIFY(!connect.waitFor(eventNamed("reestablishing"), 30000).isEmpty());
    QVERIFY(!connect.waitFor(modeNamed("Connected"), 60000).isEmpty());
    const QJsonObject reestablished = connect.waitFor(eventNamed("reestablished"), 10000);
    QCOMPARE(reestablished.value("success").toBool(), true);
    QCOMPARE(runToEnd({"--json", "status"}, {}, result), 0);
    QCOMPARE(result.value("protected").toBool(), true);
    QVERIFY(standInPids().size() >= 2);

    // SIGINT: disconnect, say so, end with success, leave no OpenVPN behind.
    QVERIFY(::kill(pid_t(connect.process().processId()), SIGINT) == 0);
    QVERIFY(!connect.waitFor(eventNamed("stopping"), 15000).isEmpty());
    QVERIFY(!connect.waitFor(modeNamed("Disconnected"), 30000).isEmpty());
    QCOMPARE(connect.finish(30000), 0);
    for (const qint64 pid : standInPids())
        QVERIFY2(!processAlive(pid), qPrintable(QStringLiteral("stand-in %1 still runs").arg(pid)));
    QVERIFY(m_service->openTunnels().isEmpty());
    QCOMPARE(runToEnd({"--json", "status"}, {}, result), int(9)); // not protected any more
}

TAVERO_TEST_GUILESS_MAIN(TestCliConnect)
#include "tst_cliconnect.moc"
