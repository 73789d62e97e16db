#include "connection/ovpnconnection.h"

#include "api/iserverapi.h"
#include "api/vpnserverinformation.h"
#include "app/programfiles.h"
#include "connection/eventwait.h"
#include "connection/ovpninputcheck.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QTextStream>
#include <QTimer>
#include <algorithm>

namespace tavero {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds startCheckLimit{5000};

#ifdef Q_OS_WIN
const QString programName = QStringLiteral("openvpn.exe");
#else
const QString programName = QStringLiteral("openvpn");
#endif

QString translated(const char* key)
{
    return QCoreApplication::translate("QObject", key);
}

OperationResult failure(const char* key)
{
    return OperationResult(translated(key), OperationResult::General);
}

OperationResult timeOut(const QString& typeText)
{
    return OperationResult(translated("warning.open_vpn_connection_time_out").arg(typeText),
                           OperationResult::General);
}

milliseconds elapsedOf(const QElapsedTimer& timer)
{
    return milliseconds(timer.elapsed());
}

} // namespace

OvpnConnection::OvpnConnection(IServerApi& api, QString programDirectory, Limits limits)
    : m_api(api)
    , m_programDirectory(std::move(programDirectory))
    , m_limits(limits)
{}

OvpnConnection::~OvpnConnection()
{
    disconnect();
}

OperationResult OvpnConnection::connectUdp(const VpnServerInformation& server)
{
    return connect(server, Udp);
}

OperationResult OvpnConnection::connectTcp(const VpnServerInformation& server)
{
    return connect(server, Tcp);
}

OperationResult OvpnConnection::connect(const VpnServerInformation& server, ConnectionType type)
{
    // A failed fetch leaves the certificate texts empty; OpenVPN then fails on its own.
    const AccountInfoGettingResult account = m_api.receiveAccountInfo();

    // These values come from the network and end up in a file a privileged openvpn executes.
    const bool hostOk = OvpnInputCheck::isPlainHost(server.host);
    const bool certificatesOk = OvpnInputCheck::isPemText(account.caCertificate) &&
                                OvpnInputCheck::isPemText(account.publicKey) &&
                                OvpnInputCheck::isPemText(account.privateKey);
    if (!hostOk || !certificatesOk) {
        qWarning().noquote() << "OpenVPN connection refused: the"
                             << (hostOk ? "certificate material" : "server host") << "of server"
                             << server.name << "is not well-formed";
        return failure("warning.open_vpn_server_data_rejected");
    }

    QString text;
    generateConfigText(type, server.host, account.caCertificate, account.publicKey,
                       account.privateKey, text);
    return connect(text, generateConnectionTypeString(type));
}

OperationResult OvpnConnection::generateConfigText(const ConnectionType& type, const QString& host,
                                                   const QString& ca, const QString& cert,
                                                   const QString& key, QString& out)
{
    QString pattern = QStringLiteral("client \n"
                                     "dev tun \n"
                                     "proto %1\n"
                                     "remote %2 1194\n"
                                     "resolv-retry infinite\n"
                                     "nobind\n"
                                     "persist-key\n"
                                     "persist-tun\n"
                                     "remote-cert-tls server\n"
                                     "comp-lzo\n"
                                     "verb 1\n");
    if (type != Tcp) {
        pattern += QStringLiteral("tun-mtu 1500\n"
                                  "tun-mtu-extra 32\n"
                                  "mssfix 1450\n"
                                  "ping 15\n"
                                  "ping-restart 0\n"
                                  "ping-timer-rem\n"
                                  "reneg-sec 0\n"
                                  "comp-lzo no\n"
                                  "pull\n"
                                  "fast-io\n"
                                  "cipher AES-256-CBC\n");
    }
    pattern += QStringLiteral("\n<ca>\n%3\n</ca>\n"
                              "\n<cert>\n%4\n</cert>\n"
                              "\n<key>\n%5\n</key>\n");
    const QString protocol = type == Tcp ? QStringLiteral("tcp") : QStringLiteral("udp");
    // The multi-argument arg() substitutes in one pass: "%" in a value is never a placeholder.
    out = pattern.arg(protocol, host, ca, cert, key);
    return {};
}

OperationResult OvpnConnection::connect(const QString& configText, const QString& typeText)
{
    const OperationResult result = forceConnect(configText, typeText);
    deleteConfigFile();
    return result;
}

OperationResult OvpnConnection::forceConnect(const QString& configText, const QString& typeText)
{
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        bool retry = false;
        const OperationResult result = tryConnectOneTime(configText, typeText, retry);
        if (!result.isSuccess && exceeded(elapsedOf(timer), m_limits.connectLimit)) {
            qDebug() << "Connecting timeout, stop processing";
            disconnect();
            return timeOut(typeText);
        }
        if (!retry) {
            return result;
        }
        // OpenVPN ended by itself: start a fresh run with a freshly written file.
    }
}

OperationResult OvpnConnection::tryConnectOneTime(const QString& configText,
                                                  const QString& typeText, bool& retry)
{
    retry = false;
    QString output;
    bool outputSeen = false;
    qDebug().noquote() << "\r\n----------------- New Connection -----------------\r\n";

    disconnect();

    QByteArray text = configText.toLatin1();
    if (text.contains("verb 0")) {
        text.replace("verb 0", "verb 1");
        qDebug() << "replace verb 1";
    }
    if (text.contains("compress lzo")) {
        text.replace("compress lzo", "comp-lzo");
        qDebug() << "replace comp-lzo";
    }

    // Removed when this run ends: OpenVPN has read it by the time it reports anything. Created
    // readable by the owner only, as it holds the private key.
    QTemporaryFile file;
    if (!file.open()) {
        qWarning().noquote() << "cannot create the OpenVPN configuration file:"
                             << file.errorString();
        return failure("label.can_not_create_config_for_open_vpn");
    }
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    m_configFilePath = file.fileName();
    {
        QTextStream stream(&file);
        stream << QString::fromLatin1(text);
        stream.flush();
        if (stream.status() != QTextStream::Ok || !file.flush()) {
            qWarning().noquote() << "cannot write the OpenVPN configuration file:"
                                 << file.errorString();
            return failure("label.can_not_create_config_for_open_vpn");
        }
    }
    file.close();

    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    // An explicit program path and working directory: the process-wide current directory stays.
    m_process->setProgram(programPath());
    m_process->setWorkingDirectory(QFileInfo(programPath()).absolutePath());
    m_process->setArguments({QStringLiteral("--config"), m_configFilePath});
    qDebug().noquote() << programName + QStringLiteral(" start ") + programPath() +
                              QStringLiteral(" --config ") + m_configFilePath;
    m_process->start(QIODevice::ReadWrite);
    // Returns as soon as exec has succeeded or failed (a matter of milliseconds), so a missing or
    // unusable program is told apart from one that fails later; the bound only guards against an
    // exec that hangs.
    m_process->waitForStarted(int(startCheckLimit.count()));
    if (m_process->error() == QProcess::FailedToStart) {
        qWarning().noquote() << "cannot start" << programPath() << ":" << m_process->errorString();
        return failure("warning.open_vpn_running_fails_check_apps");
    }

    const QString failureText = translated("warning.can_not_open_vpn_check_is_admin_granted");
    QElapsedTimer waitTimer;
    waitTimer.start();
    for (;;) {
        if (m_process->error() == QProcess::FailedToStart) {
            return failure("warning.open_vpn_does_not_exists_try_another_protocol");
        }
        const milliseconds elapsed = elapsedOf(waitTimer);
        if (exceeded(elapsed, m_limits.connectLimit)) {
            qWarning().noquote() << "OpenVPN did not come up in time; its output:"
                                 << output.right(2000);
            return timeOut(typeText);
        }
        if (exceeded(elapsed, m_limits.silenceLimit) && !outputSeen) {
            return failure("warning.open_vpn_server_does_not_respond");
        }
        const QProcess::ProcessState state = m_process->state();
        qDebug() << "openvpn state: " << state;
        if (state == QProcess::NotRunning) {
            retry = true;
            return OperationResult(failureText, OperationResult::General);
        }

        processEventsFor(int(m_limits.wait.count()),
                         int(std::max(m_limits.slice, milliseconds(1)).count()));

        const QByteArray chunk = m_process->readAll();
        if (chunk.isEmpty()) {
            QCoreApplication::processEvents();
            continue;
        }
        outputSeen = true;
        output += QString::fromLocal8Bit(chunk);
        switch (analyseProcessOutput(output)) {
        case 0:
            return {};
        case 1:
            qWarning().noquote() << "OpenVPN reported a failure:" << output.right(1000);
            return OperationResult(failureText, OperationResult::General);
        default:
            QCoreApplication::processEvents();
            break;
        }
    }
}

int OvpnConnection::analyseProcessOutput(const QString& output)
{
    if (output.contains(QLatin1String("Initialization Sequence Completed"))) {
        return 0;
    }
    if (output.contains(QLatin1String("failed, will try again in")) ||
        output.contains(QLatin1String("ERROR"))) {
        // A failed IPv6 set-up leaves the IPv4 tunnel working.
        return output.contains(QLatin1String("ipv6 command failed")) ? 2 : 1;
    }
    return 2;
}

QString OvpnConnection::generateConnectionTypeString(ConnectionType type)
{
    return type == Tcp ? QStringLiteral("TCP") : QStringLiteral("UDP");
}

OperationResult OvpnConnection::disconnect()
{
    deleteConfigFile();
    if (m_process) {
        m_process->kill();
        while (m_process->state() != QProcess::NotRunning) {
            const QByteArray chunk = m_process->readAll();
            if (!chunk.isEmpty()) {
                qDebug().noquote() << QString::fromLocal8Bit(chunk);
            }
            m_process->waitForFinished(int(m_limits.slice.count()));
            QCoreApplication::processEvents();
        }
        m_process.reset();
    }
    return {};
}

void OvpnConnection::deleteConfigFile()
{
    if (!m_configFilePath.isEmpty()) {
        QFile::remove(m_configFilePath);
        m_configFilePath.clear();
    }
}

QString OvpnConnection::programPath() const
{
    const QString directory = m_programDirectory.isEmpty()
                                  ? ProgramFiles::companionDirectory() + QStringLiteral("/bin")
                                  : m_programDirectory;
    return QDir(directory).absoluteFilePath(programName);
}

bool OvpnConnection::exceeded(milliseconds elapsed, milliseconds limit) const
{
    const milliseconds tick = std::max(m_limits.tick, milliseconds(1));
    return (elapsed / tick) * tick > limit;
}

} // namespace tavero
