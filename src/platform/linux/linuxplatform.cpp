#include "platform/linux/linuxplatform.h"

#include "app/startenvironment.h"
#include "app/userfileaccess.h"
#include "platform/linux/autostartentry.h"
#include "platform/linux/halfdefaultroutes.h"
#include "platform/linux/interfacebackend.h"
#include "platform/linux/networkmanagerbackend.h"
#include "platform/linux/privatestatefile.h"
#include "platform/linux/tunnelnetworkguard.h"
#include "platform/platformoverrides.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QMutex>
#include <QMutexLocker>
#include <QStandardPaths>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <ifaddrs.h>
#include <memory>
#include <net/if.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tavero {
namespace {

constexpr char elevatedVariable[] = "TAVERO_ELEVATED";
constexpr char readyMarker[] = "TAVERO_ELEVATED_READY\n";
// How long the user may take to answer the authentication dialog.
constexpr int elevationAnswerLimitMs = 180000;
constexpr int capNetAdmin = 12;
constexpr char ikev2EntryName[] = "TAVERO IKEv2";

// The device behind the "TAVERO IKEv2" entry while a tunnel is up; the adapter lookup is static.
QMutex ikev2DeviceLock;
QString ikev2Device;

void setIkev2Device(const QString& device)
{
    const QMutexLocker locker(&ikev2DeviceLock);
    ikev2Device = device;
}

bool hasNetAdminCapability()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    while (!status.atEnd()) {
        const QByteArray line = status.readLine();
        if (line.startsWith("CapEff:")) {
            bool ok = false;
            const qulonglong caps = line.mid(7).trimmed().toULongLong(&ok, 16);
            return ok && (caps & (1ULL << capNetAdmin)) != 0;
        }
    }
    return false;
}

QByteArray ownExecutable()
{
    char buffer[4096];
    const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    return length > 0 ? QByteArray(buffer, int(length)) : QByteArray();
}

// This process's command line as it was started, program first.
QList<QByteArray> ownArguments()
{
    QFile commandLine(QStringLiteral("/proc/self/cmdline"));
    if (!commandLine.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> arguments = commandLine.readAll().split('\0');
    if (!arguments.isEmpty() && arguments.last().isEmpty())
        arguments.removeLast();
    return arguments;
}

QList<QByteArray> ownEnvironment()
{
    QList<QByteArray> assignments;
    for (char** entry = environ; *entry != nullptr; ++entry)
        assignments << QByteArray(*entry);
    return assignments;
}

// Waits for the elevated copy's marker on the pipe; false when pkexec ends first (declined or
// failed) or the user does not answer in time.
bool waitForElevatedCopy(pid_t child, int readEnd)
{
    QByteArray received;
    int waitedMs = 0;
    while (waitedMs < elevationAnswerLimitMs) {
        pollfd fd{readEnd, POLLIN, 0};
        const int ready = ::poll(&fd, 1, 250);
        waitedMs += 250;
        if (ready < 0 && errno != EINTR)
            break;
        if (ready > 0) {
            char buffer[256];
            const ssize_t count = ::read(readEnd, buffer, sizeof buffer);
            if (count <= 0)
                break; // the writing side closed without the marker
            received.append(buffer, int(count));
            if (received.contains(readyMarker))
                return true;
        }
        int status = 0;
        if (::waitpid(child, &status, WNOHANG) == child)
            return false;
    }
    ::kill(child, SIGTERM);
    ::waitpid(child, nullptr, 0);
    return false;
}

QString translated(const char* key)
{
    return QCoreApplication::translate("QObject", key);
}

constexpr quint16 rdpPort = 3389;
constexpr char tcpListenState[] = "0A";

// One table in the /proc/net/tcp format: "sl local_address rem_address st ...", addresses as
// hexadecimal "ADDRESS:PORT". The header line never matches the state test.
bool tableHasRdpListener(const QByteArray& table)
{
    const QList<QByteArray> lines = table.split('\n');
    for (const QByteArray& line : lines) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 4 || fields.at(3) != tcpListenState)
            continue;
        const QByteArray& local = fields.at(1);
        bool ok = false;
        const uint port = local.mid(local.lastIndexOf(':') + 1).toUInt(&ok, 16);
        if (ok && local.contains(':') && port == rdpPort)
            return true;
    }
    return false;
}

} // namespace

LinuxPlatform::LinuxPlatform()
    : LinuxPlatform(defaultOptions())
{}

LinuxPlatform::Options LinuxPlatform::defaultOptions()
{
    Options options;
    options.killSwitchStateFile = killSwitchStateFileDefault();
    options.tunnelNetworkStateFile = TunnelNetworkGuard::stateFileDefault();
    return options;
}

LinuxPlatform::LinuxPlatform(Options options)
    : m_options(std::move(options))
{
    loadRemembered();
    TunnelNetworkGuard::restoreLeftover(m_options.tunnelNetworkStateFile);
}

bool LinuxPlatform::appliesTunnelNetwork()
{
    return qEnvironmentVariableIntValue("TAVERO_KEEP_NETWORK") != 1 && isRunningAsAdministrator();
}

OperationResult LinuxPlatform::applyTunnelNetwork(const TunnelNetwork& network)
{
    if (!m_tunnelNetwork) {
        m_tunnelNetwork = std::make_unique<TunnelNetworkGuard>(m_options.tunnelNetworkStateFile,
                                                               TunnelResolver::systemOptions());
    }
    return m_tunnelNetwork->apply(network);
}

void LinuxPlatform::releaseTunnelNetwork()
{
    if (m_tunnelNetwork)
        m_tunnelNetwork->release();
}

QString LinuxPlatform::killSwitchStateFileDefault()
{
    return PrivateStateFile::defaultPath(QStringLiteral("killswitch.json"));
}

void LinuxPlatform::loadRemembered()
{
    if (m_options.killSwitchStateFile.isEmpty())
        return;
    QFile file(m_options.killSwitchStateFile);
    if (!file.exists())
        return;
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning() << "Cannot read the kill switch's state" << file.fileName()
                   << file.errorString();
        return;
    }
    const QJsonObject state = QJsonDocument::fromJson(file.readAll()).object();
    m_rememberedBackend = state.value(QLatin1String("backend")).toString();
    const QJsonArray ids = state.value(QLatin1String("connections")).toArray();
    const QJsonObject restore = state.value(QLatin1String("restore")).toObject();
    for (const QJsonValue& id : ids) {
        if (id.isString() && !id.toString().isEmpty() && !m_remembered.contains(id.toString())) {
            m_remembered.append(id.toString());
            m_restore.insert(id.toString(), restore.value(id.toString()).toArray());
        }
    }
    if (!m_remembered.isEmpty()) {
        qWarning() << "The kill switch of an earlier run left network connections switched off:"
                   << m_remembered.join(QStringLiteral(", "));
    }
}

bool LinuxPlatform::saveRemembered()
{
    if (m_options.killSwitchStateFile.isEmpty())
        return true;
    QJsonObject state;
    if (!m_remembered.isEmpty()) {
        state.insert(QLatin1String("backend"), m_backend ? m_backend->name() : m_rememberedBackend);
        state.insert(QLatin1String("connections"), QJsonArray::fromStringList(m_remembered));
        QJsonObject restore;
        for (const QString& id : qAsConst(m_remembered)) {
            if (!m_restore.value(id).isEmpty())
                restore.insert(id, m_restore.value(id));
        }
        state.insert(QLatin1String("restore"), restore);
    }
    return PrivateStateFile::write(m_options.killSwitchStateFile, state);
}

LinuxPlatform::~LinuxPlatform()
{
    hangUpIKEv2();
}

QString LinuxPlatform::programPath() const
{
    if (!m_options.programPath.isEmpty())
        return m_options.programPath;
    return QFile::decodeName(ownExecutable());
}

QString LinuxPlatform::autostartFilePath() const
{
    QString directory = m_options.autostartDirectory;
    if (directory.isEmpty()) {
        QString configHome = qEnvironmentVariable("XDG_CONFIG_HOME");
        // A relative value is invalid and must be ignored.
        if (configHome.isEmpty() || QDir::isRelativePath(configHome))
            configHome = QDir::homePath() + QStringLiteral("/.config");
        directory = configHome + QStringLiteral("/autostart");
    }
    return directory + QStringLiteral("/tavero.desktop");
}

bool LinuxPlatform::isRunOnStart()
{
    return AutostartEntry(autostartFilePath()).pointsAt(programPath());
}

void LinuxPlatform::setRunOnStart(bool run)
{
    // A root copy writes the entry as the user whose home holds it.
    const AutostartEntry entry(autostartFilePath());
    const UserFileAccess asHomeUser(entry.filePath());
    if (!run) {
        if (!entry.remove())
            qWarning() << "Could not remove the start entry" << entry.filePath();
        return;
    }
    if (!entry.write(programPath()))
        qWarning() << "Could not write the start entry" << entry.filePath();
}

std::unique_ptr<NetworkManagerDialup> LinuxPlatform::dialup() const
{
    return m_options.dialupFactory ? m_options.dialupFactory()
                                   : std::make_unique<NetworkManagerDialup>();
}

bool LinuxPlatform::pptpSupports()
{
    return dialup()->supports(NetworkManagerDialup::Kind::Pptp);
}
bool LinuxPlatform::l2tpSupports()
{
    return dialup()->supports(NetworkManagerDialup::Kind::L2tp);
}
bool LinuxPlatform::isPptpAsync()
{
    return true;
}
bool LinuxPlatform::isL2tpAsync()
{
    return true;
}

OperationResult LinuxPlatform::forceDisconnect()
{
    qDebug("LinuxPlatform::forceDisconnect");
    hangUpIKEv2();
    // Failures are only logged: whatever could be hung up is down.
    if (!dialup()->hangUp())
        qWarning("Not every NetworkManager dial-up connection could be removed");
    return {};
}

void LinuxPlatform::hangUpIKEv2()
{
    // Routes first: without the tunnel they would lead nowhere.
    m_ikev2Routes.reset();
    if (m_ikev2)
        m_ikev2->stop();
    m_ikev2.reset();
    setIkev2Device({});
    // After the tunnel: look-ups never go around a tunnel that is still up.
    if (std::exchange(m_ikev2Network, false))
        releaseTunnelNetwork();
}

OperationResult LinuxPlatform::dialThroughNetworkManager(NetworkManagerDialup::Kind kind,
                                                         const QString& host, const QString& user,
                                                         const QString& password,
                                                         const QString& preSharedKey,
                                                         const char* failure)
{
    QString detail;
    if (dialup()->dial(kind, host, user, password, preSharedKey, detail))
        return {};
    qCritical().noquote() << NetworkManagerDialup::entryName(kind) << "dial failure:" << detail;
    return OperationResult(translated(failure));
}

OperationResult LinuxPlatform::forceConnectPptp(const QString& host, const QString& user,
                                                const QString& password)
{
    return dialThroughNetworkManager(
        NetworkManagerDialup::Kind::Pptp, host, user, password, {},
        QT_TRANSLATE_NOOP("QObject", "warning.cannot_open_pptp_connection"));
}

OperationResult LinuxPlatform::forceConnectL2tp(const QString& host, const QString& user,
                                                const QString& password,
                                                const QString& preSharedKey)
{
    return dialThroughNetworkManager(
        NetworkManagerDialup::Kind::L2tp, host, user, password, preSharedKey,
        QT_TRANSLATE_NOOP("QObject", "warning.cannot_open_l2tp_connection"));
}

OperationResult LinuxPlatform::forceConnectIKEv2(const QString& host, const QString& user,
                                                 const QString& password, bool withoutAdminRights)
{
    const OperationResult failure(
        translated(QT_TRANSLATE_NOOP("QObject", "warning.cannot_open_ikev2_connection")));
    hangUpIKEv2();
    if (withoutAdminRights) {
        // The desktop user's way: NetworkManager's strongswan plugin takes the default route
        // itself, as the Windows entry does without rights.
        return dialThroughNetworkManager(
            NetworkManagerDialup::Kind::IKEv2, host, user, password, {},
            QT_TRANSLATE_NOOP("QObject", "warning.cannot_open_ikev2_connection"));
    }
    m_ikev2 = std::make_unique<StrongswanTunnel>(m_options.ikev2);
    QString detail;
    if (!m_ikev2->start(host, user, password, detail)) {
        qCritical().noquote() << "IKEv2 dial failure:" << detail;
        hangUpIKEv2();
        return failure;
    }
    setIkev2Device(m_ikev2->device());
    const AdapterInfo adapter = getAdapterInfo(QLatin1String(ikev2EntryName));
    if (adapter.interfaceIndex == 0) {
        qWarning("IKEv2 adapter not found");
        hangUpIKEv2();
        return failure;
    }
    qDebug() << "New IKEv2 Connection Adapter: Interface Index" << adapter.interfaceIndex
             << "IPv6 Interface Index" << adapter.ipv6InterfaceIndex;
    qDebug() << "IP addresses:";
    for (const QHostAddress& address : adapter.addresses)
        qDebug() << address.toString();

    m_ikev2Routes = std::make_unique<HalfDefaultRoutes>();
    if (!m_ikev2Routes->addServerRoute(m_ikev2->serverAddress(), detail) ||
        !m_ikev2Routes->addHalves(AF_INET, int(adapter.interfaceIndex), detail)) {
        qCritical().noquote() << "IPv4 Routes haven't added:" << detail;
        hangUpIKEv2();
        return failure;
    }
    // IPv6 only where the tunnel's device has a link-local address; a failure is no failure.
    const bool linkLocal = std::any_of(
        adapter.addresses.cbegin(), adapter.addresses.cend(), [](const QHostAddress& a) {
            return a.protocol() == QAbstractSocket::IPv6Protocol && a.isLinkLocal();
        });
    const bool ipv6 =
        linkLocal && m_ikev2Routes->addHalves(AF_INET6, int(adapter.ipv6InterfaceIndex), detail);
    if (!ipv6)
        qWarning().noquote() << "IPv6 Routes haven't added" << detail;
    if (!appliesTunnelNetwork())
        return {};
    // The configuration payload's DNS servers, as for OpenVPN; without the IPv6 routes IPv6 is
    // blocked outside the tunnel.
    const OperationResult applied = applyTunnelNetwork(
        {m_ikev2->device(), m_ikev2->dnsServers(), {}, ipv6, m_ikev2->serverAddress().toString()});
    if (!applied.isSuccess) {
        qCritical().noquote() << "IKEv2 tunnel's DNS and IPv6 settings:" << applied.message;
        hangUpIKEv2();
        return failure;
    }
    m_ikev2Network = true;
    return {};
}

bool LinuxPlatform::haveDisabledNetDevicesByKillSwitch()
{
    return !m_remembered.isEmpty();
}

OperationResult LinuxPlatform::forceTurnOffInternet()
{
    bool reenabled = false;
    return enableOrDisableConnections(false, reenabled);
}

OperationResult LinuxPlatform::forceTurnOnInternet(bool& reenabled)
{
    return enableOrDisableConnections(true, reenabled);
}

std::unique_ptr<NetworkSwitchBackend> LinuxPlatform::chooseNetworkSwitchBackend()
{
    if (qEnvironmentVariableIntValue("TAVERO_KEEP_NETWORK") == 1) {
        qWarning("Network switching is turned off (TAVERO_KEEP_NETWORK=1)");
        return nullptr;
    }
    const QDBusConnection systemBus = QDBusConnection::systemBus();
    if (NetworkManagerBackend::isRunning(systemBus))
        return std::make_unique<NetworkManagerBackend>(systemBus);
    return std::make_unique<InterfaceBackend>();
}

OperationResult LinuxPlatform::enableOrDisableConnections(bool enable, bool& reenabled)
{
    reenabled = false;
    // Remembered identifiers mean something only to the backend that made them; with nothing
    // remembered the choice is made afresh (NetworkManager may have started or stopped).
    if (m_remembered.isEmpty() || !m_backend) {
        m_backend = m_options.networkBackendFactory ? m_options.networkBackendFactory()
                                                    : chooseNetworkSwitchBackend();
        // Identifiers an earlier run left are only switched by the same kind of backend.
        if (m_backend && !m_remembered.isEmpty() && !m_rememberedBackend.isEmpty() &&
            m_backend->name() != m_rememberedBackend) {
            qWarning() << "The remembered connections belong to" << m_rememberedBackend
                       << "but this run switches through" << m_backend->name();
            m_backend.reset();
        }
    }
    const NetworkSwitchStatus reached =
        m_backend ? m_backend->open()
                  : NetworkSwitchStatus::failure(EPERM, QStringLiteral("no network switch"));
    if (!reached.ok()) {
        qWarning() << "Cannot reach the network switch:" << reached.detail;
        QString message = translated(QT_TRANSLATE_NOOP(
            "QObject", "warning.could_not_connect_to_the_connection_manager_library"));
        // Without a loaded catalogue the key itself comes back, with no place for the code.
        if (message.contains(QLatin1String("%1")))
            message = message.arg(reached.code);
        return OperationResult(message);
    }
    // A pass that switches nothing fails; otherwise the last switch made decides.
    NetworkSwitchStatus status =
        NetworkSwitchStatus::failure(ENOENT, QStringLiteral("no connection was switched"));
    if (enable)
        switchOnPass(*m_backend, status, reenabled);
    else
        switchOffPass(*m_backend, status);
    m_backend->close();
    if (status.ok())
        return {};
    qWarning() << (enable ? "Network switch-on failed:" : "Network switch-off failed:")
               << status.detail;
    return OperationResult(
        enable
            ? translated(QT_TRANSLATE_NOOP("QObject", "warning.failed_to_turn_on_the_internet"))
            : translated(QT_TRANSLATE_NOOP("QObject", "warning.failed_to_turn_off_the_internet")));
}

void LinuxPlatform::switchOffPass(NetworkSwitchBackend& backend, NetworkSwitchStatus& status)
{
    QVector<NetworkConnection> connections;
    const NetworkSwitchStatus listed = backend.listSwitchedOn(connections);
    if (!listed.ok())
        status = listed;
    // Remembered, on disk as well, before the first switch: a half-switched connection must
    // still come back, even after a crash of this process.
    for (const NetworkConnection& connection : qAsConst(connections)) {
        if (!m_remembered.contains(connection.id))
            m_remembered.append(connection.id);
        m_restore.insert(connection.id, connection.restore);
    }
    if (!saveRemembered()) {
        qWarning() << "Cannot write the kill switch's state" << m_options.killSwitchStateFile
                   << "; a crash while the network is cut would leave it cut";
    }
    for (const NetworkConnection& connection : qAsConst(connections)) {
        status = backend.switchOff(connection);
        if (status.ok())
            qInfo() << "Network connection switched off:" << connection.label;
        else
            qWarning() << "Could not switch off" << connection.label << status.detail;
    }
}

void LinuxPlatform::switchOnPass(NetworkSwitchBackend& backend, NetworkSwitchStatus& status,
                                 bool& reenabled)
{
    if (m_remembered.isEmpty())
        return;
    // What could not be switched on stays remembered, so the next pass tries it again.
    QStringList stillOff;
    for (const QString& id : qAsConst(m_remembered)) {
        NetworkSwitchBackend::State state = NetworkSwitchBackend::State::Missing;
        const NetworkSwitchStatus known = backend.stateOf(id, state);
        if (!known.ok()) {
            status = known;
            stillOff << id;
            continue;
        }
        // Gone, or switched on by the user meanwhile: left alone.
        if (state != NetworkSwitchBackend::State::Off)
            continue;
        status = backend.switchOn(id, m_restore.value(id));
        reenabled = true;
        if (status.ok()) {
            qInfo() << "Network connection switched on:" << id;
        } else {
            qWarning() << "Could not switch on" << id << status.detail;
            stillOff << id;
        }
    }
    m_remembered = stillOff;
    for (auto it = m_restore.begin(); it != m_restore.end();)
        it = stillOff.contains(it.key()) ? std::next(it) : m_restore.erase(it);
    if (!saveRemembered())
        qWarning() << "Cannot update the kill switch's state" << m_options.killSwitchStateFile;
}

bool LinuxPlatform::IsRdpListening()
{
    if (const auto forced = PlatformOverrides::rdpListening())
        return *forced;
    return IsRdpListening({QStringLiteral("/proc/net/tcp"), QStringLiteral("/proc/net/tcp6")});
}

bool LinuxPlatform::IsRdpListening(const QStringList& tcpTables)
{
    for (const QString& path : tcpTables) {
        QFile table(path);
        if (!table.open(QIODevice::ReadOnly)) {
            qDebug() << "Cannot read" << path;
            continue;
        }
        if (tableHasRdpListener(table.readAll())) {
            qDebug("Found local RDP server");
            return true;
        }
    }
    qDebug("Local RDP server not found");
    return false;
}

AdapterInfo LinuxPlatform::getAdapterInfo(const QString& friendlyName)
{
    AdapterInfo result;
    ifaddrs* raw = nullptr;
    if (::getifaddrs(&raw) != 0) {
        qDebug() << "getifaddrs failed:" << std::strerror(errno);
        return result;
    }
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> list(raw, ::freeifaddrs);
    QString name = friendlyName;
    if (name == QLatin1String(ikev2EntryName)) {
        const QMutexLocker locker(&ikev2DeviceLock);
        name = ikev2Device;
        if (name.isEmpty())
            return result;
    }
    const QByteArray wanted = QFile::encodeName(name);
    const unsigned index = wanted.isEmpty() ? 0 : ::if_nametoindex(wanted.constData());
    for (const ifaddrs* entry = list.get(); entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr ||
            (entry->ifa_addr->sa_family != AF_INET && entry->ifa_addr->sa_family != AF_INET6))
            continue;
        const QHostAddress address(entry->ifa_addr);
        qDebug() << "Interface:" << entry->ifa_name << "Unicast IP:" << address.toString();
        if (index != 0 && wanted == entry->ifa_name && !address.isNull())
            result.addresses.append(address);
    }
    if (index == 0) {
        result.addresses.clear();
        return result;
    }
    result.interfaceIndex = index;
    result.ipv6InterfaceIndex = index; // one index serves both families here
    return result;
}

bool LinuxPlatform::isRunningAsAdministrator()
{
    if (const auto forced = PlatformOverrides::administrator())
        return *forced;
    return ::geteuid() == 0 || hasNetAdminCapability();
}

bool LinuxPlatform::elevateToAdmin()
{
    if (qEnvironmentVariableIntValue("TAVERO_NO_ELEVATE") == 1)
        return false;
    if (qEnvironmentVariableIntValue(elevatedVariable) == 1)
        return false; // this copy is already the result of an elevation: never loop
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return false;
    const QByteArray pkexec = QFile::encodeName(QStandardPaths::findExecutable("pkexec"));
    const QByteArray program = ownExecutable();
    if (pkexec.isEmpty() || program.isEmpty())
        return false;

    // pkexec runs the program itself, so the prompt is the client's own (its polkit action), and
    // clears the environment: what the elevated copy needs crosses as arguments.
    QList<QByteArray> arguments{pkexec, program};
    arguments << StartEnvironment::elevationArguments(ownArguments(), ownEnvironment());
    std::vector<char*> argv;
    for (QByteArray& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0)
        return false;
    const pid_t child = ::fork();
    if (child < 0) {
        ::close(pipeEnds[0]);
        ::close(pipeEnds[1]);
        return false;
    }
    if (child == 0) {
        ::dup2(pipeEnds[1], STDOUT_FILENO);
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    ::close(pipeEnds[1]);
    const bool started = waitForElevatedCopy(child, pipeEnds[0]);
    ::close(pipeEnds[0]);
    return started;
}

void LinuxPlatform::confirmElevatedStart()
{
    if (qEnvironmentVariableIntValue(elevatedVariable) != 1)
        return;
    std::fputs(readyMarker, stdout);
    std::fflush(stdout);
    // The pipe closes with the first copy; nothing else of ours may write into it.
    const int devNull = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (devNull >= 0) {
        ::dup2(devNull, STDOUT_FILENO);
        ::close(devNull);
    }
}

} // namespace tavero
