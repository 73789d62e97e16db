#include "connection/connectionchain.h"

#include "api/iserverapi.h"
#include "api/serverapi.h"
#include "app/isettings.h"
#include "connection/killswitcher.h"
#include "platform/iplatform.h"
#include "platform/nativeplatform.h"

#include <QCoreApplication>
#include <QDebug>
#include <QEventLoop>
#include <QFuture>
#include <QFutureWatcher>
#include <QTimer>
#include <QtConcurrent>

namespace tavero {

const ProtocolNamesClass ConnectionChain::ProtocolNames;
const QFlags<ProtocolType> ConnectionChain::ALL_PROTOCOLS(protocols::allProtocols);

ConnectionChain::ConnectionChain(IServerApi& api, IPlatform& platform, ISettings& settings,
                                 KillSwitcher& killSwitcher, Options options)
    : m_api(api)
    , m_platform(platform)
    , m_settings(settings)
    , m_killSwitcher(killSwitcher)
    , m_ovpn(api, options.openVpnDirectory, options.openVpnLimits, &platform)
    , m_ovpnTcp(m_ovpn)
    , m_ovpnUdp(m_ovpn)
    , m_l2tp(platform)
    , m_pptp(platform)
    , m_ikev2(platform)
    , m_keeper(api, options.keeperIntervalMs)
    , m_options(std::move(options))
{
    QObject::connect(&m_keeper, &ConnectionKeeper::breakDetected, this,
                     &ConnectionChain::onBreakDetected, Qt::DirectConnection);
    // An OpenVPN that ends under a verified tunnel is a break now: the keeper's IP check may be
    // riding a kept-alive connection through the dead tunnel and would report only at the
    // request limit. Queued, since handling it stops the process whose signal this is; a tunnel
    // replaced or torn down meanwhile is not this one.
    m_ovpn.setTunnelEndedHandler([this] {
        const quint64 generation = m_generation;
        QMetaObject::invokeMethod(
            this,
            [this, generation] {
                if (generation == m_generation && m_mode == Connected)
                    onBreakDetected(ConnectionKeeper::NotProtected);
            },
            Qt::QueuedConnection);
    });
    m_reestablishTimer.setSingleShot(true);
    m_reestablishTimer.setInterval(m_options.reestablishIntervalMs);
    QObject::connect(&m_reestablishTimer, &QTimer::timeout, this,
                     &ConnectionChain::tryToReestablishConnection);
    // A dial-up tunnel left over from an earlier run is dropped at start.
    m_platform.disconnect();
}

ConnectionChain::~ConnectionChain() = default;

// Marks an operation for its lifetime and puts back the one it interrupted (a connect run by
// the handling of a break, or a teardown inside it).
class ConnectionChain::OperationScope {
public:
    OperationScope(ConnectionChain& chain, Operation operation)
        : m_chain(chain)
        , m_previous(chain.m_operation)
    {
        m_chain.m_operation = operation;
    }
    ~OperationScope() { m_chain.m_operation = m_previous; }
    Q_DISABLE_COPY_MOVE(OperationScope)

private:
    ConnectionChain& m_chain;
    const Operation m_previous;
};

OperationResult ConnectionChain::connect(const VpnServerInformation& server)
{
    qDebug() << "connect";
    // Connecting again to the server being re-established takes over from the re-establishing.
    m_needReestablish = m_needReestablish && server.name != m_lastConnectedServer.name;
    if (m_operation == Operation::Connecting || m_operation == Operation::Disconnecting) {
        // Reached through event processing inside a running attempt or teardown, which can only
        // continue once this call returns: refuse rather than wait, and leave it alone. The
        // handling of a break is not refused: the user's connect replaces the broken tunnel and
        // the handling, once back, sees a newer tunnel and stops.
        qDebug() << "connect refused: another operation is running";
        return OperationResult(QCoreApplication::translate("QObject", "label.connection_opens"));
    }
    const OperationScope scope(*this, Operation::Connecting);
    return connectNoBlock(server);
}

OperationResult ConnectionChain::connectNoBlock(const VpnServerInformation& server)
{
    qDebug() << "connectNoBlock";
    nextGeneration();
    m_killSwitcher.startInternet(30);
    if (m_currentIndex >= 0)
        disconnectNoBlock();
    if (!isThereInternet()) {
        return OperationResult(
            QCoreApplication::translate("tavero::ConnectionChain",
                                        "warning.connection_problems_check_internet_connection"),
            OperationResult::NoInternet);
    }
    const OperationResult built = createChain();
    if (!built.isSuccess) {
        qDebug() << built.message;
        return built;
    }
    m_keeper.stop();
    setMode(Connecting);
    const OperationResult result = forceConnect(server);
    if (result.isSuccess) {
        m_keeper.start();
        m_needReestablish = false;
        setMode(Connected);
    } else {
        setMode(Failed);
    }
    return result;
}

OperationResult ConnectionChain::forceConnect(const VpnServerInformation& server)
{
    const bool anySupports = std::any_of(m_chain.cbegin(), m_chain.cend(),
                                         [&](IConnection* c) { return c->supports(server); });
    if (!anySupports) {
        return OperationResult(QCoreApplication::translate(
            "QObject",
            "warning.none_of_the_specified_protocol_settings_are_supported_by_the_selected_"
            "server."));
    }
    QVector<IConnection*> tried;
    for (m_currentIndex = 0; m_currentIndex < m_chain.size(); ++m_currentIndex) {
        IConnection* connection = m_chain[m_currentIndex];
        qDebug() << "current connection name: " << connection->name();
        if (connection->supports(server))
            tried << connection;
        if (tryConnectOneConnection(connection, server)) {
            m_currentServer = server;
            m_lastConnectedServer = server;
            return OperationResult();
        }
    }
    // Nothing is live now: whatever a failed protocol left running (a process that reported an
    // error, a half-made dial) would otherwise be out of reach of any later disconnect.
    stopTried(tried);
    const QString protocolList = protocolTypesString(m_protocolTypes);
    const QString message =
        m_protocolTypes == ALL_PROTOCOLS || protocolList.isEmpty()
            ? QCoreApplication::translate("QObject", "warning.can_not_connect")
            : QCoreApplication::translate("QObject", "warning.can_not_connect_by_protocol")
                  .arg(protocolList);
    m_currentServer = VpnServerInformation();
    m_currentIndex = -1;
    return OperationResult(message);
}

void ConnectionChain::stopTried(const QVector<IConnection*>& tried)
{
    for (IConnection* connection : tried) {
        const OperationResult stopped = connection->disconnect();
        if (!stopped.isSuccess)
            qWarning().noquote() << "Cannot stop" << connection->name() << ":" << stopped.message;
    }
}

bool ConnectionChain::tryConnectOneConnection(IConnection* connection,
                                              const VpnServerInformation& server)
{
    if (!connection->supports(server))
        return false;
    OperationResult result;
    if (!connection->canAsyncConnect()) {
        qDebug() << "connect Sync start";
        result = connection->connect(server);
        qDebug() << "connect Sync end";
    } else {
        // The dial blocks for its whole length: run it on the pool and keep the interface alive,
        // waking the moment it ends.
        QFuture<OperationResult> task = QtConcurrent::run([this, connection, server] {
            qDebug() << "connect async start";
            const OperationResult dialled = connection->connect(server);
            qDebug() << "connect async end";
            emit connectionFinished();
            return dialled;
        });
        QFutureWatcher<OperationResult> watcher;
        QEventLoop loop;
        QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
        QTimer recheck; // a safety net only: the watcher's signal ends the wait
        recheck.setInterval(std::max(m_options.asyncPollWindowMs, 1));
        QObject::connect(&recheck, &QTimer::timeout, &loop, &QEventLoop::quit);
        watcher.setFuture(task);
        recheck.start();
        while (!task.isFinished())
            loop.exec();
        result = task.result();
    }
    const QString name = connection->name();
    if (!result.isSuccess) {
        qDebug() << "Protocol " << name << "Server " << server.name
                 << " connection fail: " << result.message;
        return false;
    }
    const IpGettingResult ip = m_api.receiveIp();
    if (ip.status != RequestResult::Ok) {
        qDebug() << "Protocol " << name << "Server " << server.name
                 << " connection fail: cannot receive IP adress after connection";
        connection->disconnect();
        return false;
    }
    if (!ip.isProtected) {
        qDebug() << "Protocol " << name << "Server " << server.name
                 << " connection fail: IP adress hasn't been changed";
        connection->disconnect();
        return false;
    }
    qDebug() << "Protocol " << name << ": "
             << "Connected to" << server.name;
    return true;
}

OperationResult ConnectionChain::createChain()
{
    const QFlags<ProtocolType> allowed = m_settings.protocolTypes();
    const OperationResult disconnected = disconnectNoBlock();
    if (!disconnected.isSuccess) {
        qDebug() << disconnected.message;
        return disconnected;
    }
    m_protocolTypes = allowed;
    m_chain.clear();
    // A non-administrator on a machine that accepts remote-desktop sessions gets IKEv2 only when
    // it is the sole choice: without administrator rights IKEv2 takes all traffic, remote access
    // included.
    if (allowed.testFlag(IKEv2) && ServerApi::isIKEv2Allowed() &&
        (NativePlatform::isRunningAsAdministrator() || !NativePlatform::IsRdpListening() ||
         protocols::isSingleFlag(allowed))) {
        m_chain << &m_ikev2;
    }
    if (allowed.testFlag(OvpnUdp) && ServerApi::isOpenVpnAllowed())
        m_chain << &m_ovpnUdp;
    if (allowed.testFlag(OvpnTcp) && ServerApi::isOpenVpnAllowed())
        m_chain << &m_ovpnTcp;
    return OperationResult();
}

OperationResult ConnectionChain::disconnect()
{
    m_needReestablish = false;
    if (m_operation == Operation::Connecting || m_operation == Operation::Disconnecting)
        return OperationResult(QCoreApplication::translate("QObject", "label.connection_opens"));
    const OperationScope scope(*this, Operation::Disconnecting);
    return disconnectNoBlock();
}

OperationResult ConnectionChain::disconnectNoBlock()
{
    qDebug() << "disconnectNoBlock";
    m_keeper.stop();
    if (m_currentIndex < 0 || m_currentIndex >= m_chain.size())
        return OperationResult();
    nextGeneration();
    IConnection* connection = m_chain[m_currentIndex];
    const OperationResult result = connection->disconnect();
    if (result.isSuccess) {
        m_currentIndex = -1;
        m_currentServer = VpnServerInformation();
        qDebug() << "Protocol " << connection->name() << ": "
                 << "Disconnected";
    } else {
        qDebug() << "Cannot disconnect protocol " << connection->name();
    }
    setMode(Disconnected);
    return result;
}

void ConnectionChain::onBreakDetected(ConnectionKeeper::BreakReason breakReason)
{
    qDebug() << "ConnectionChain::onBreakDetected";
    if (m_operation == Operation::Connecting || m_operation == Operation::Disconnecting) {
        // The keeper is stopped before every attempt and teardown: a report now is about a
        // tunnel that is already being replaced.
        qDebug() << "break report ignored: an operation is running";
        return;
    }
    // Also nested in the handling of an earlier break: a connect made meanwhile started the
    // keeper for its new tunnel, and this report is about that one.
    const OperationScope scope(*this, Operation::HandlingBreak);
    handleBreak(breakReason);
}

void ConnectionChain::handleBreak(ConnectionKeeper::BreakReason breakReason)
{
    if (m_settings.isKillSwitch()) {
        // At once, network first and tunnel second: no moment with the tunnel gone and the
        // network open, and no waiting for a second answer that could only come through the
        // broken tunnel or past it.
        m_isKillSwitching = true;
        m_needReestablish = false;
        m_killSwitcher.stopInternet();
        {
            const OperationScope teardown(*this, Operation::Disconnecting);
            disconnectNoBlock();
        }
        m_currentServer = VpnServerInformation();
        m_currentIndex = -1;
        m_isKillSwitching = false;
        setMode(Failed);
    } else {
        if (breakReason == ConnectionKeeper::NoNetwork && m_currentIndex >= 0) {
            // Asked again with the tunnel still in place, so the traffic of the wait still goes
            // through it. A connect or disconnect of the user during the wait wins.
            const quint64 generation = m_generation;
            const IpGettingResult ip = m_api.receiveIp();
            if (generation != m_generation) {
                qDebug() << "break handling ended: the tunnel was replaced meanwhile";
                return;
            }
            if (ip.status == RequestResult::Ok && ip.isProtected) {
                m_keeper.start();
                setMode(Connected);
                return;
            }
        }
        {
            // User actions during the teardown are refused, so nothing else changes the tunnel.
            const OperationScope teardown(*this, Operation::Disconnecting);
            disconnectNoBlock();
        }
        m_needReestablish = true;
        tryToReestablishConnection();
    }
    if (m_mode != Connected)
        emit protocolsExpired();
}

void ConnectionChain::tryToReestablishConnection()
{
    qDebug() << "tryToReestablishConnection";
    // Not while a connect or disconnect runs further down the stack: they decide what the
    // tunnel is; the next shot tries again.
    const bool free = m_operation == Operation::None || m_operation == Operation::HandlingBreak;
    if (m_needReestablish && free) {
        emit reestablishStarted();
        const OperationResult result = connect(m_lastConnectedServer);
        m_needReestablish = !result.isSuccess;
        emit reestablishFinished(result.isSuccess);
    }
    if (m_needReestablish)
        m_reestablishTimer.start();
}

void ConnectionChain::serverWasChanged(const VpnServerInformation& server)
{
    m_needReestablish = m_needReestablish && server.name == m_lastConnectedServer.name;
}

void ConnectionChain::setMode(Mode mode)
{
    m_mode = mode;
    emit modeChanged();
    // Let listeners repaint before long work continues.
    QCoreApplication::processEvents();
}

QString ConnectionChain::modeText() const
{
    return m_mode == Connected ? QCoreApplication::translate("QObject", "label.connected")
                               : QCoreApplication::translate("QObject", "label.disconnected");
}

bool ConnectionChain::isKillswitched()
{
    if (m_settings.isKillSwitch() && m_isKillSwitching)
        return true;
    return m_killSwitcher.isInternetOff();
}

bool ConnectionChain::isThereInternet()
{
    return m_api.isThereInternet();
}

QString ConnectionChain::protocolTypesString(QFlags<ProtocolType> flags)
{
    return protocols::textualList(flags);
}

QString ConnectionChain::currProtocolName()
{
    if (m_currentIndex < 0 || m_currentIndex >= m_chain.size())
        return ProtocolNames.disconnected;
    return m_chain[m_currentIndex]->name();
}

QStringList ConnectionChain::chainNames()
{
    QStringList names;
    for (IConnection* connection : qAsConst(m_chain))
        names << connection->name();
    return names;
}

} // namespace tavero
