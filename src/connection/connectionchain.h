#pragma once

#include "api/operationresult.h"
#include "api/protocoltype.h"
#include "api/vpnserverinformation.h"
#include "connection/connectionkeeper.h"
#include "connection/iconnection.h"
#include "connection/ikev2connection.h"
#include "connection/l2tpconnection.h"
#include "connection/ovpnconnection.h"
#include "connection/ovpntcpconnection.h"
#include "connection/ovpnudpconnection.h"
#include "connection/pptpconnection.h"
#include "connection/protocolnames.h"

#include <QObject>
#include <QTimer>
#include <QVector>

class IServerApi;

namespace tavero {

class IPlatform;
class ISettings;
class KillSwitcher;

// Where OpenVPN lives and the waits the product fixes; tests point and shorten them.
struct ConnectionChainOptions {
    QString openVpnDirectory; // empty: "bin" beside the executable
    OvpnConnection::Limits openVpnLimits;
    int reestablishIntervalMs = 60000;
    int keeperIntervalMs = ConnectionKeeper::defaultIntervalMs;
    // While an IKEv2 dial runs the chain waits for its end in a nested event loop; this bounds how
    // long that loop goes without checking the dial once more (a safety net: the dial's end wakes
    // it at once).
    int asyncPollWindowMs = 500;
};

// Brings a verified tunnel up by trying the allowed protocols in turn (IKEv2, OpenVPN UDP,
// OpenVPN TCP), keeps it with the connection keeper, and after a break either re-establishes it
// every interval or lets the kill switch cut the network. Main thread only.
class ConnectionChain : public QObject {
    Q_OBJECT
public:
    using IConnection = tavero::IConnection;
    using ProtocolNamesClass = tavero::ProtocolNamesClass;

    // The pages compare against these numbers.
    enum Mode : int {
        Connecting = 0,   // an attempt is running
        Connected = 1,    // a verified tunnel is up
        Disconnected = 2, // initial; after every disconnect
        Unused3 = 3,      // never entered
        Unused4 = 4,      // never entered
        Failed = 5,       // the attempt failed, or the kill switch cut the network after a break
    };
    Q_ENUM(Mode)

    using Options = ConnectionChainOptions;

    static const ProtocolNamesClass ProtocolNames;
    static const QFlags<ProtocolType> ALL_PROTOCOLS;

    ConnectionChain(IServerApi& api, IPlatform& platform, ISettings& settings,
                    KillSwitcher& killSwitcher, Options options = {});
    ~ConnectionChain() override;
    Q_DISABLE_COPY_MOVE(ConnectionChain)

    OperationResult connect(const VpnServerInformation& server);
    OperationResult connectNoBlock(const VpnServerInformation& server);
    OperationResult forceConnect(const VpnServerInformation& server);
    bool tryConnectOneConnection(IConnection* connection, const VpnServerInformation& server);
    OperationResult createChain();
    OperationResult disconnect();
    OperationResult disconnectNoBlock();
    void tryToReestablishConnection();
    void serverWasChanged(const VpnServerInformation& server);

    Mode mode() const { return m_mode; }
    void setMode(Mode mode);
    QString modeText() const;
    bool isKillswitched();
    bool sayKillSwitched() const { return m_isKillSwitching; }
    bool isThereInternet();
    static QString protocolTypesString(QFlags<ProtocolType> flags);
    QString currProtocolName();
    void turnOnIsProgrammTermination() { m_isProgrammTermination = true; }

    // For observers and tests. isBusy(): a connect, a disconnect or the handling of a break is
    // running further down the call stack.
    bool isConnecting() const { return m_operation == Operation::Connecting; }
    bool isBusy() const { return m_operation != Operation::None; }
    bool needsReestablish() const { return m_needReestablish; }
    bool isReestablishScheduled() const { return m_reestablishTimer.isActive(); }
    VpnServerInformation currentServer() const { return m_currentServer; }
    QStringList chainNames();

public slots:
    void onBreakDetected(tavero::ConnectionKeeper::BreakReason breakReason);

signals:
    void modeChanged();
    void protocolChanged();
    void protocolsExpired();
    void connectionFinished();
    void reestablishStarted();
    void reestablishFinished(bool isSuccess);

private:
    // What runs right now. Every nested event loop can deliver a user action or a timer; this is
    // the one place that decides whether it may run (see connect(), disconnect()).
    enum class Operation { None, Connecting, Disconnecting, HandlingBreak };
    class OperationScope;

    void handleBreak(ConnectionKeeper::BreakReason breakReason);
    void stopTried(const QVector<IConnection*>& tried);
    // The tunnel is replaced or torn down: results that belong to the old one no longer count.
    void nextGeneration() { ++m_generation; }

    IServerApi& m_api;
    IPlatform& m_platform;
    ISettings& m_settings;
    KillSwitcher& m_killSwitcher;
    OvpnConnection m_ovpn;
    OvpnTcpConnection m_ovpnTcp;
    OvpnUdpConnection m_ovpnUdp;
    L2tpConnection m_l2tp;
    PptpConnection m_pptp;
    IKEv2Connection m_ikev2;
    Operation m_operation = Operation::None;
    // Counts tunnels: a nested wait compares it before and after to learn whether the tunnel it
    // was waiting about is still the current one.
    quint64 m_generation = 0;
    QVector<IConnection*> m_chain;
    int m_currentIndex = -1;
    VpnServerInformation m_currentServer;
    QFlags<ProtocolType> m_protocolTypes;
    ConnectionKeeper m_keeper;
    Mode m_mode = Disconnected;
    bool m_isKillSwitching = false;
    bool m_isProgrammTermination = false;
    bool m_needReestablish = false;
    VpnServerInformation m_lastConnectedServer;
    Options m_options;
    QTimer m_reestablishTimer;
};

} // namespace tavero
