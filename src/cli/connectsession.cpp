#include "cli/connectsession.h"

#include "cli/clioutput.h"
#include "cli/exitcode.h"
#include "manager/vpnmanager.h"

#include <QEventLoop>
#include <QJsonObject>
#include <QThread>
#include <csignal>

namespace tavero::cli {
namespace {
constexpr int stopPollMs = 25;

QString signalName(int signalNumber)
{
    switch (signalNumber) {
    case SIGINT:
        return QStringLiteral("SIGINT");
    case SIGTERM:
        return QStringLiteral("SIGTERM");
#ifdef SIGHUP
    case SIGHUP:
        return QStringLiteral("SIGHUP");
#endif
    default:
        return QStringLiteral("signal %1").arg(signalNumber);
    }
}
} // namespace

ConnectSession::ConnectSession(VpnManager& manager, CliOutput& output, Clock clock)
    : m_manager(manager)
    , m_output(output)
    , m_clock(clock ? std::move(clock) : Clock(&QDateTime::currentDateTimeUtc))
{
    m_stopTimer.setInterval(stopPollMs);
    QObject::connect(&m_stopTimer, &QTimer::timeout, this, &ConnectSession::tryFinish);
    ConnectionChain& chain = m_manager.connection();
    QObject::connect(&chain, &ConnectionChain::modeChanged, this, &ConnectSession::onModeChanged);
    QObject::connect(&chain, &ConnectionChain::reestablishStarted, this,
                     &ConnectSession::onReestablishStarted);
    QObject::connect(&chain, &ConnectionChain::reestablishFinished, this,
                     &ConnectSession::onReestablishFinished);
    QObject::connect(&chain, &ConnectionChain::protocolsExpired, this,
                     &ConnectSession::onProtocolsExpired);
}

ConnectSession::~ConnectSession() = default;

int ConnectSession::run()
{
    m_serverName = m_manager.vpnServers().currServer().name;
    m_inAttempt = true;
    // No reachability probe here: the chain makes one before its attempt (after the kill switch
    // has given the network back) and reports a missing network as such. The log-in a moment ago
    // reached the service.
    // Fresh VPN credentials for the tunnel, as the status page does before every connect.
    m_manager.receiveAccountInfo();
    const OperationResult result = m_manager.connect();
    m_inAttempt = false;
    if (!result.isSuccess) {
        const int code = exitCodeFor(result, ConnectFailed);
        m_output.error(result.message, code);
        return code;
    }
    if (m_stopRequested)
        return finish();

    QEventLoop loop;
    m_loop = &loop;
    const int code = loop.exec();
    m_loop = nullptr;
    return code;
}

void ConnectSession::requestStop(int signalNumber)
{
    if (m_stopRequested)
        return;
    m_stopRequested = true;
    m_output.event(now(), QStringLiteral("stopping"),
                   {{QStringLiteral("signal"), signalName(signalNumber)}},
                   QStringLiteral("Stopping (%1)").arg(signalName(signalNumber)));
    m_manager.turnOnIsProgrammTermination();
    m_stopTimer.start();
}

void ConnectSession::tryFinish()
{
    // Only straight from the session's loop: not inside an attempt, a re-establishing or a
    // service exchange waiting in a nested loop.
    const bool atTopLevel = m_loop && QThread::currentThread()->loopLevel() <= 1;
    if (m_finished || m_inAttempt || m_manager.connection().isBusy() || !atTopLevel)
        return;
    m_loop->exit(finish());
}

int ConnectSession::finish()
{
    m_finished = true;
    m_stopTimer.stop();
    const OperationResult result = m_manager.disconnect();
    // The chain reports Disconnected only when a tunnel was torn down; say it in any case.
    if (m_lastPrintedMode != ConnectionChain::Disconnected)
        printMode(ConnectionChain::Disconnected);
    if (!result.isSuccess) {
        m_output.error(result.message, Failure);
        return Failure;
    }
    return Success;
}

void ConnectSession::onModeChanged()
{
    const ConnectionChain::Mode mode = m_manager.connection().mode();
    if (mode == m_lastPrintedMode)
        return;
    if (mode == ConnectionChain::Connected) {
        // A break without network that turns out harmless reports Connected with no server.
        const QString connected = m_manager.connection().currentServer().name;
        if (!connected.isEmpty())
            m_serverName = connected;
    }
    printMode(mode);
}

void ConnectSession::printMode(ConnectionChain::Mode mode)
{
    m_lastPrintedMode = mode;
    const QString name = modeName(mode);
    QJsonObject fields{{QStringLiteral("mode"), name}, {QStringLiteral("server"), m_serverName}};
    QString text = QStringLiteral("%1 server=%2").arg(name, m_serverName);
    if (mode == ConnectionChain::Connected) {
        const QString protocol = m_manager.connection().currProtocolName();
        fields.insert(QStringLiteral("protocol"), protocol);
        text += QStringLiteral(" protocol=\"%1\"").arg(protocol);
    }
    m_output.event(now(), QStringLiteral("mode"), fields, text);
}

void ConnectSession::onReestablishStarted()
{
    m_output.event(now(), QStringLiteral("reestablishing"),
                   {{QStringLiteral("server"), m_serverName}},
                   QStringLiteral("Re-establishing the tunnel to %1").arg(m_serverName));
}

void ConnectSession::onReestablishFinished(bool isSuccess)
{
    m_output.event(now(), QStringLiteral("reestablished"), {{QStringLiteral("success"), isSuccess}},
                   isSuccess ? QStringLiteral("Tunnel re-established")
                             : QStringLiteral("Re-establishing failed; trying again later"));
}

void ConnectSession::onProtocolsExpired()
{
    const bool killSwitch = m_manager.isKillSwitch();
    m_output.event(
        now(), QStringLiteral("tunnelLost"), {{QStringLiteral("killSwitch"), killSwitch}},
        killSwitch ? QStringLiteral("The tunnel broke and the kill switch cut the network; stop "
                                    "tavero-cli to bring the network back")
                   : QStringLiteral("The tunnel broke and is not back yet; trying again later"));
}

QDateTime ConnectSession::now() const
{
    return m_clock();
}

QString ConnectSession::modeName(ConnectionChain::Mode mode)
{
    switch (mode) {
    case ConnectionChain::Connecting:
        return QStringLiteral("Connecting");
    case ConnectionChain::Connected:
        return QStringLiteral("Connected");
    case ConnectionChain::Disconnected:
        return QStringLiteral("Disconnected");
    case ConnectionChain::Failed:
        return QStringLiteral("Failed");
    default:
        return QStringLiteral("Mode %1").arg(int(mode));
    }
}

} // namespace tavero::cli
