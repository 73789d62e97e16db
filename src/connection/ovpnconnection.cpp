#include "connection/ovpnconnection.h"

#include "api/iserverapi.h"
#include "api/vpnserverinformation.h"
#include "app/programfiles.h"
#include "connection/ovpninputcheck.h"
#include "connection/ovpnprocess.h"
#include "connection/runtimedirectory.h"
#include "platform/iplatform.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QTimer>
#include <algorithm>
#include <optional>
#include <utility>

namespace tavero {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds startCheckLimit{5000};
// From SIGKILL to the end of the process (the kernel closing the tun device).
constexpr milliseconds stopLimit{5000};
// The pause before restarting an OpenVPN that ended by itself doubles up to this multiple of the
// first one (500 ms: 0.5, 1, 2, 4, 4, ... s, some eight runs in the 20 s a connect may take).
constexpr int maxPauseFactor = 8;

int nextDriverNumber = 0; // main thread only

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

OvpnConnection::OvpnConnection(IServerApi& api, QString programDirectory, Limits limits,
                               IPlatform* platform)
    : m_api(api)
    , m_programDirectory(std::move(programDirectory))
    , m_limits(limits)
    , m_platform(platform)
    , m_entryPrefix(RuntimeDirectory::ownerTag() + QLatin1Char('-') +
                    QString::number(nextDriverNumber++))
{}

OvpnConnection::~OvpnConnection()
{
    // No event processing here: the owner is being torn down, and nothing may run into it now.
    supersede();
    deleteConfigFile();
    stopProcess(false);
    if (m_platform)
        m_platform->releaseTunnelNetwork();
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
    const quint64 attempt = supersede();
    const OperationResult result = forceConnect(configText, typeText, attempt);
    if (m_attempt != attempt) {
        // A disconnect or connect from inside a wait took over; the process and the file are
        // its business now (the superseding call stopped ours and removed our file).
        return result;
    }
    OperationResult outcome = result;
    if (outcome.isSuccess)
        outcome = applyTunnelNetwork();
    deleteConfigFile();
    if (!outcome.isSuccess) {
        // A failed attempt must not leave an openvpn behind that nobody will stop: the chain
        // forgets a protocol that failed.
        stopProcess(true);
        if (m_platform)
            m_platform->releaseTunnelNetwork();
    }
    return outcome;
}

OperationResult OvpnConnection::forceConnect(const QString& configText, const QString& typeText,
                                             quint64 attempt)
{
    QElapsedTimer timer;
    timer.start();
    const milliseconds firstPause = std::max(m_limits.wait, milliseconds(1));
    milliseconds pauseLength = firstPause;
    QString output;
    for (;;) {
        output.clear();
        const Outcome outcome = runOnce(configText, attempt, output);
        if (outcome == Outcome::Superseded) {
            qDebug() << "OpenVPN attempt superseded by a later connect or disconnect";
            return failure("warning.can_not_open_vpn_check_is_admin_granted");
        }
        if (outcome == Outcome::TooLong ||
            (outcome != Outcome::Up && exceeded(elapsedOf(timer), m_limits.connectLimit))) {
            qDebug() << "Connecting timeout, stop processing";
            qWarning().noquote() << "OpenVPN did not come up in time; its output:"
                                 << output.right(2000);
            return timeOut(typeText);
        }
        switch (outcome) {
        case Outcome::Up:
            return {};
        case Outcome::Failed:
            qWarning().noquote() << "OpenVPN reported a failure:" << output.right(1000);
            return failure("warning.can_not_open_vpn_check_is_admin_granted");
        case Outcome::Silent:
            return failure("warning.open_vpn_server_does_not_respond");
        case Outcome::NoFile:
            return failure("label.can_not_create_config_for_open_vpn");
        case Outcome::NotStarted:
            return failure("warning.open_vpn_running_fails_check_apps");
        case Outcome::Lost:
            return failure("warning.open_vpn_does_not_exists_try_another_protocol");
        default:
            break;
        }
        // OpenVPN ended by itself: a fresh run with a fresh file, after a pause that doubles each
        // time, so a program that dies at once is not restarted in a tight loop.
        qDebug().noquote() << "openvpn ended by itself:" << output.right(500);
        deleteConfigFile();
        const milliseconds left = deadline(m_limits.connectLimit) - elapsedOf(timer);
        if (!pause(std::clamp(left, milliseconds(0), pauseLength), attempt)) {
            return failure("warning.can_not_open_vpn_check_is_admin_granted");
        }
        if (exceeded(elapsedOf(timer), m_limits.connectLimit)) {
            qDebug() << "Connecting timeout, stop processing";
            return timeOut(typeText);
        }
        pauseLength = std::min(pauseLength * 2, firstPause * maxPauseFactor);
    }
}

OvpnConnection::Outcome OvpnConnection::runOnce(const QString& configText, quint64 attempt,
                                                QString& output)
{
    qDebug().noquote() << "\r\n----------------- New Connection -----------------\r\n";
    stopProcess(true);
    if (m_attempt != attempt) {
        return Outcome::Superseded;
    }
    deleteConfigFile();
    if (!writeConfigFile(configText)) {
        return Outcome::NoFile;
    }

    m_process = std::make_unique<OvpnProcess>();
    QProcess* const process = m_process.get();
    process->setProcessChannelMode(QProcess::MergedChannels);
    // An explicit program path and working directory: the process-wide current directory stays.
    process->setProgram(programPath());
    process->setWorkingDirectory(QFileInfo(programPath()).absolutePath());
    QStringList arguments{QStringLiteral("--config"), m_configFilePath};
    if (m_platform && m_platform->appliesTunnelNetwork()) {
        // OpenVPN splits the command like a shell; "$0" is the first word after the script.
        QString file = environmentFilePath();
        file.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
        file.replace(QLatin1Char('"'), QStringLiteral("\\\""));
        arguments << QStringLiteral("--script-security") << QStringLiteral("2")
                  << QStringLiteral("--up")
                  << QStringLiteral("/bin/sh -c 'umask 077; env >\"$0\"' \"%1\"").arg(file);
    }
    process->setArguments(arguments);
    qDebug().noquote() << programName + QStringLiteral(" start ") + programPath() +
                              QLatin1Char(' ') + arguments.join(QLatin1Char(' '));
    process->start(QIODevice::ReadWrite);
    // Returns as soon as exec has succeeded or failed (a matter of milliseconds), so a missing or
    // unusable program is told apart from one that fails later; the bound only guards against an
    // exec that hangs.
    process->waitForStarted(int(startCheckLimit.count()));
    if (process->error() == QProcess::FailedToStart) {
        qWarning().noquote() << "cannot start" << programPath() << ":" << process->errorString();
        return Outcome::NotStarted;
    }
    m_processId = process->processId();
    RuntimeDirectory::recordProcess(recordName(m_processId), m_processId, m_configFilePath);

    // The wait ends at the first decisive event; signals arriving after it are ignored.
    std::optional<Outcome> outcome;
    bool outputSeen = false;
    QEventLoop loop;
    const auto settle = [&](Outcome value) {
        if (!outcome) {
            outcome = value;
            loop.quit();
        }
    };
    QObject::connect(process, &QProcess::readyRead, &loop, [&] {
        const QByteArray chunk = process->readAll();
        if (chunk.isEmpty()) {
            return;
        }
        outputSeen = true;
        output += QString::fromLocal8Bit(chunk);
        const int verdict = analyseProcessOutput(output);
        if (verdict != 2) {
            settle(verdict == 0 ? Outcome::Up : Outcome::Failed);
        }
    });
    QObject::connect(
        process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop, [&] {
            output += QString::fromLocal8Bit(process->readAll());
            settle(analyseProcessOutput(output) == 1 ? Outcome::Failed : Outcome::Exited);
        });
    QObject::connect(process, &QProcess::errorOccurred, &loop, [&](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            settle(Outcome::Lost);
        }
    });
    QTimer silence;
    silence.setSingleShot(true);
    QObject::connect(&silence, &QTimer::timeout, &loop, [&] {
        if (!outputSeen) {
            settle(Outcome::Silent);
        }
    });
    silence.start(deadline(m_limits.silenceLimit));
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &loop, [&] { settle(Outcome::TooLong); });
    limit.start(deadline(m_limits.connectLimit));

    if (!waitInLoop(loop, attempt)) {
        return Outcome::Superseded;
    }
    if (*outcome == Outcome::Up) {
        // The tunnel may run for days; what OpenVPN writes from now on would only pile up.
        QObject::connect(process, &QProcess::readyRead, process, [process] { process->readAll(); });
        QObject::connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished),
                         process, [this] {
                             if (m_tunnelEnded)
                                 m_tunnelEnded();
                         });
    }
    return *outcome;
}

bool OvpnConnection::writeConfigFile(const QString& configText)
{
    QByteArray text = configText.toLatin1();
    if (text.contains("verb 0")) {
        text.replace("verb 0", "verb 1");
        qDebug() << "replace verb 1";
    }
    if (text.contains("compress lzo")) {
        text.replace("compress lzo", "comp-lzo");
        qDebug() << "replace comp-lzo";
    }
    // In the private runtime directory, readable by the owner only: it holds the private key.
    // Removed as soon as the run has a verdict (OpenVPN has read it by then), by disconnect, and
    // failing both by the next start's leftover cleanup.
    const QString directory = RuntimeDirectory::path();
    if (directory.isEmpty()) {
        return false;
    }
    QTemporaryFile file(directory + QLatin1Char('/') + m_entryPrefix +
                        QStringLiteral("-XXXXXX.conf"));
    file.setAutoRemove(false);
    if (!file.open()) {
        qWarning().noquote() << "cannot create the OpenVPN configuration file:"
                             << file.errorString();
        return false;
    }
    m_configFilePath = file.fileName();
    if (file.write(text) != text.size() || !file.flush()) {
        qWarning().noquote() << "cannot write the OpenVPN configuration file:"
                             << file.errorString();
        file.close();
        deleteConfigFile();
        return false;
    }
    return true;
}

bool OvpnConnection::waitInLoop(QEventLoop& loop, quint64 attempt)
{
    QEventLoop* const outer = m_wait;
    m_wait = &loop;
    loop.exec();
    m_wait = outer;
    return m_attempt == attempt;
}

bool OvpnConnection::pause(milliseconds length, quint64 attempt)
{
    QEventLoop loop;
    QTimer::singleShot(length, &loop, &QEventLoop::quit);
    return waitInLoop(loop, attempt);
}

quint64 OvpnConnection::supersede()
{
    if (m_wait) {
        m_wait->quit();
        m_wait = nullptr;
    }
    return ++m_attempt;
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
    supersede();
    deleteConfigFile();
    stopProcess(true);
    // After the tunnel has gone: until then look-ups still go through it, never around it.
    if (m_platform)
        m_platform->releaseTunnelNetwork();
    return {};
}

void OvpnConnection::stopProcess(bool keepEventsRunning)
{
    // Detached first: whatever runs during the waits below (a connect, another disconnect) finds
    // no process here and cannot reach this one.
    std::unique_ptr<QProcess> process = std::move(m_process);
    const qint64 pid = std::exchange(m_processId, 0); // QProcess forgets it once the process ends
    if (!process) {
        return;
    }
    QObject::disconnect(process.get(), nullptr, nullptr, nullptr);
    if (process->state() != QProcess::NotRunning) {
        // SIGKILL: the tunnel must go at once. The kernel removes the tun device when the
        // process's descriptors close, which can take a moment.
        process->kill();
        if (keepEventsRunning) {
            QEventLoop loop;
            QObject::connect(process.get(),
                             qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &loop,
                             &QEventLoop::quit);
            QTimer::singleShot(stopLimit, &loop, &QEventLoop::quit);
            if (process->state() != QProcess::NotRunning) {
                loop.exec();
            }
        }
        if (process->state() != QProcess::NotRunning) {
            process->waitForFinished(int(stopLimit.count()));
        }
    }
    const QByteArray rest = process->readAll();
    if (!rest.isEmpty()) {
        qDebug().noquote() << QString::fromLocal8Bit(rest);
    }
    if (process->state() != QProcess::NotRunning) {
        // Stuck in the kernel. Its record stays for the next start; the object goes when the
        // process finally ends instead of blocking here again in QProcess's destructor.
        qWarning().noquote() << "openvpn" << pid << "did not end within" << stopLimit.count()
                             << "ms of SIGKILL";
        QObject::connect(process.get(), qOverload<int, QProcess::ExitStatus>(&QProcess::finished),
                         process.get(), &QObject::deleteLater);
        process.release();
        return;
    }
    RuntimeDirectory::forgetProcess(recordName(pid));
}

QString OvpnConnection::environmentFilePath() const
{
    return m_configFilePath + QStringLiteral(".env");
}

OperationResult OvpnConnection::applyTunnelNetwork()
{
    if (!m_platform || !m_platform->appliesTunnelNetwork())
        return {};
    QFile file(environmentFilePath());
    // Written by OpenVPN's "up" step, which runs before it reports the tunnel up.
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "OpenVPN did not hand over the tunnel's settings:"
                             << file.errorString();
        return failure("warning.can_not_open_vpn_check_is_admin_granted");
    }
    const TunnelNetwork network = TunnelNetwork::fromOpenVpnEnvironment(file.read(1 << 20));
    const OperationResult applied = m_platform->applyTunnelNetwork(network);
    if (!applied.isSuccess) {
        qWarning().noquote() << "The tunnel's DNS and IPv6 settings could not be applied:"
                             << applied.message;
        return failure("warning.can_not_open_vpn_check_is_admin_granted");
    }
    return {};
}

void OvpnConnection::deleteConfigFile()
{
    if (!m_configFilePath.isEmpty()) {
        QFile::remove(environmentFilePath());
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

QString OvpnConnection::recordName(qint64 pid) const
{
    return m_entryPrefix + QLatin1Char('-') + QString::number(pid);
}

milliseconds OvpnConnection::deadline(milliseconds limit) const
{
    // The first moment at which exceeded() answers true.
    const milliseconds tick = std::max(m_limits.tick, milliseconds(1));
    return (limit / tick + 1) * tick;
}

bool OvpnConnection::exceeded(milliseconds elapsed, milliseconds limit) const
{
    const milliseconds tick = std::max(m_limits.tick, milliseconds(1));
    return (elapsed / tick) * tick > limit;
}

} // namespace tavero
