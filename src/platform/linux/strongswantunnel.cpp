#include "platform/linux/strongswantunnel.h"

#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHostInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QThread>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tavero {
namespace {

constexpr char pidFileName[] = "tavero-charon.pid";
constexpr char connectionName[] = "tavero";
constexpr int startLimitMs = 10000;
constexpr int initiateLimitSeconds = 30;

// Inside charon's mount namespace the private directory is /run.
constexpr char strongswanConf[] = R"(charon {
    port = 0
    port_nat_t = 0
    retransmit_tries = 3
    # Our routes are made by the client; charon's go to a table that only marked packets reach.
    routing_table = 2217
    routing_table_prio = 2217
    install_virtual_ip = yes
    load = random nonce pem pkcs1 pkcs8 x509 revocation constraints pubkey openssl kdf hmac sha1 sha2 kernel-libipsec kernel-netlink socket-default vici eap-identity eap-mschapv2 resolve
    plugins {
        # The DNS servers of the configuration payload land here; the client applies them.
        resolve {
            file = /run/dns.conf
        }
        kernel-netlink {
            fwmark = 0x54410001
        }
        vici {
            socket = unix:///run/charon.vici
        }
        revocation {
            enable_ocsp = no
            enable_crl = no
        }
    }
    filelog {
        tavero {
            path = /run/charon.log
            default = 1
        }
    }
}
swanctl {
    load = pem pkcs1 pkcs8 x509 openssl
}
)";

// A value for swanctl.conf: quoted, with the two characters that end or escape a quote escaped.
QString quoted(const QString& value)
{
    QString escaped = value;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    escaped.replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

bool hasControlCharacters(const QString& value)
{
    for (const QChar c : value) {
        if (c.category() == QChar::Other_Control)
            return true;
    }
    return false;
}

bool writePrivateFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    return file.write(content) == content.size() && file.flush();
}

bool isCharon(pid_t pid, const QString& charon)
{
    return QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid)).symLinkTarget() ==
           QFileInfo(charon).canonicalFilePath();
}

// SIGTERM, then SIGKILL after `graceMs`; reaps it when it is our child.
void terminate(pid_t pid, int graceMs)
{
    ::kill(pid, SIGTERM);
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < graceMs) {
        if (::waitpid(pid, nullptr, WNOHANG) == pid || ::kill(pid, 0) != 0)
            return;
        QThread::msleep(10);
    }
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
}

} // namespace

StrongswanTunnel::StrongswanTunnel(Paths paths)
    : m_paths(std::move(paths))
{}

StrongswanTunnel::~StrongswanTunnel()
{
    stop();
}

void StrongswanTunnel::stopLeftover(const Paths& paths)
{
    QFile pidFile(paths.stateDirectory + QLatin1Char('/') + QLatin1String(pidFileName));
    if (pidFile.open(QIODevice::ReadOnly)) {
        bool ok = false;
        const pid_t pid = pid_t(pidFile.readAll().trimmed().toInt(&ok));
        pidFile.close();
        if (ok && pid > 1 && isCharon(pid, paths.charon)) {
            qInfo() << "Stopping the IKEv2 daemon an earlier run left behind, pid" << pid;
            terminate(pid, 3000);
        }
    }
    QDir directory(paths.stateDirectory);
    if (directory.exists()) {
        for (const QString& entry : directory.entryList(QDir::AllEntries | QDir::System |
                                                        QDir::Hidden | QDir::NoDotAndDotDot)) {
            const QString path = directory.filePath(entry);
            if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink())
                QDir(path).removeRecursively();
            else
                QFile::remove(path);
        }
    }
}

bool StrongswanTunnel::prepareDirectory(QString& detail) const
{
    const QString path = m_paths.stateDirectory;
    if (!QDir().mkpath(path)) {
        detail = QStringLiteral("cannot create ") + path;
        return false;
    }
    // Ours alone: a directory someone else owns or that is a link could be read or swapped.
    struct stat status {};
    const QByteArray name = QFile::encodeName(path);
    if (::lstat(name.constData(), &status) != 0 || !S_ISDIR(status.st_mode) ||
        status.st_uid != ::geteuid() || ::chmod(name.constData(), 0700) != 0) {
        detail = path + QStringLiteral(" is not a private directory of ours");
        return false;
    }
    return QDir().mkpath(path + QStringLiteral("/swanctl/x509ca")) ||
           (detail = QStringLiteral("cannot create the CA directory"), false);
}

bool StrongswanTunnel::writeConfiguration(const QString& user, const QString& password,
                                          QString& detail) const
{
    const QString dir = m_paths.stateDirectory;
    // Trust: the system's store plus the development CA file, each certificate its own file.
    QList<QSslCertificate> authorities = QSslConfiguration::systemCaCertificates();
    const QString extra = qEnvironmentVariable("TAVERO_CA_FILE").trimmed();
    if (!extra.isEmpty())
        authorities += QSslCertificate::fromPath(extra, QSsl::Pem);
    int index = 0;
    for (const QSslCertificate& certificate : qAsConst(authorities)) {
        const QString path = dir + QStringLiteral("/swanctl/x509ca/ca-%1.pem").arg(index++);
        if (!writePrivateFile(path, certificate.toPem())) {
            detail = QStringLiteral("cannot write ") + path;
            return false;
        }
    }
    const QString id = m_host;
    const QString conf = QStringLiteral("connections {\n"
                                        "    %1 {\n"
                                        "        version = 2\n"
                                        "        remote_addrs = %2\n"
                                        "        vips = 0.0.0.0\n"
                                        "        encap = yes\n"
                                        "        local {\n"
                                        "            auth = eap-mschapv2\n"
                                        "            eap_id = %3\n"
                                        "        }\n"
                                        "        remote {\n"
                                        "            auth = pubkey\n"
                                        "            id = %4\n"
                                        "        }\n"
                                        "        children {\n"
                                        "            %1 {\n"
                                        "                remote_ts = 0.0.0.0/0\n"
                                        "            }\n"
                                        "        }\n"
                                        "    }\n"
                                        "}\n"
                                        "secrets {\n"
                                        "    eap-%1 {\n"
                                        "        id = %3\n"
                                        "        secret = %5\n"
                                        "    }\n"
                                        "}\n")
                             .arg(QLatin1String(connectionName), m_server.toString(), quoted(user),
                                  quoted(id), quoted(password));
    if (!writePrivateFile(dir + QStringLiteral("/swanctl/swanctl.conf"), conf.toUtf8()) ||
        !writePrivateFile(dir + QStringLiteral("/strongswan.conf"), strongswanConf)) {
        detail = QStringLiteral("cannot write the configuration into ") + dir;
        return false;
    }
    return true;
}

bool StrongswanTunnel::launch(QString& detail)
{
    // Everything the child needs is made before fork: after it only system calls run.
    const QByteArray runDir = QFile::encodeName(m_paths.stateDirectory);
    const QByteArray program = QFile::encodeName(m_paths.charon);
    QByteArray confVariable = "STRONGSWAN_CONF=/run/strongswan.conf";
    // strongSwan's resolve plugin hands DNS servers to resolvconf(8), the system's, whenever that
    // exists at its compiled-in place; charon must not find it, so that they land in our file.
    const bool hideResolvconf = QFileInfo::exists(QStringLiteral("/sbin/resolvconf"));
    char* const argv[] = {const_cast<char*>(program.constData()), nullptr};
    char* const envp[] = {confVariable.data(), nullptr};

    const pid_t child = ::fork();
    if (child < 0) {
        detail = QStringLiteral("fork: ") + QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    if (child == 0) {
        // Its own session: a terminal's Ctrl-C is for the client, which then hangs up in order.
        ::setsid();
        const int null = ::open("/dev/null", O_RDWR);
        if (null >= 0) {
            ::dup2(null, 0);
            ::dup2(null, 1);
            ::dup2(null, 2);
        }
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount(runDir.constData(), "/run", nullptr, MS_BIND, nullptr) != 0 ||
            (hideResolvconf && ::mount("tmpfs", "/sbin", "tmpfs", MS_NOSUID | MS_NODEV | MS_NOEXEC,
                                       "mode=0755") != 0))
            ::_exit(126);
        ::execve(argv[0], argv, envp);
        ::_exit(127);
    }
    m_pid = child;
    writePrivateFile(m_paths.stateDirectory + QLatin1Char('/') + QLatin1String(pidFileName),
                     QByteArray::number(child) + '\n');

    const QString socket = m_paths.stateDirectory + QStringLiteral("/charon.vici");
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < startLimitMs) {
        int status = 0;
        if (::waitpid(child, &status, WNOHANG) == child) {
            m_pid = -1;
            detail = WIFEXITED(status) && WEXITSTATUS(status) == 126
                         ? QStringLiteral("charon cannot get a mount namespace of its own")
                         : QStringLiteral("charon ended at start (status %1)").arg(status);
            return false;
        }
        // The pid file is written once the plugins are loaded, the socket once vici listens.
        if (QFileInfo::exists(socket) &&
            QFileInfo::exists(m_paths.stateDirectory + QStringLiteral("/charon.pid")))
            return true;
        QThread::msleep(5);
    }
    detail = QStringLiteral("charon did not open its control socket in time");
    return false;
}

bool StrongswanTunnel::swanctl(const QStringList& arguments, int timeoutMs, QString& detail) const
{
    QProcess process;
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("STRONGSWAN_CONF"),
                       m_paths.stateDirectory + QStringLiteral("/strongswan.conf"));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(m_paths.swanctl, QStringList(arguments)
                                       << QStringLiteral("--uri")
                                       << QStringLiteral("unix://") + m_paths.stateDirectory +
                                              QStringLiteral("/charon.vici"));
    if (!process.waitForStarted(5000)) {
        detail = QStringLiteral("swanctl cannot be started: ") + process.errorString();
        return false;
    }
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished(1000);
        detail = QStringLiteral("swanctl did not finish in time");
        return false;
    }
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return true;
    const QStringList lines =
        QString::fromLocal8Bit(process.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    detail = QStringLiteral("swanctl: ") +
             lines.mid(qMax(0, lines.size() - 3)).join(QLatin1String(" | "));
    return false;
}

QStringList StrongswanTunnel::dnsServers() const
{
    QFile file(m_paths.stateDirectory + QStringLiteral("/dns.conf"));
    QStringList servers;
    if (!file.open(QIODevice::ReadOnly))
        return servers;
    // "nameserver ADDRESS   # by strongSwan" lines; anything else is not ours to pass on.
    for (const QByteArray& line : file.readAll().split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        const QHostAddress address(QString::fromLatin1(fields.value(1)));
        if (fields.first() == "nameserver" && !address.isNull() &&
            !servers.contains(address.toString()))
            servers << address.toString();
    }
    return servers;
}

QString StrongswanTunnel::tunDeviceFromLog() const
{
    QFile log(m_paths.stateDirectory + QStringLiteral("/charon.log"));
    if (!log.open(QIODevice::ReadOnly))
        return {};
    static const QRegularExpression created(QStringLiteral("created TUN device: (\\S+)"));
    QString device;
    auto matches = created.globalMatch(QString::fromUtf8(log.readAll()));
    while (matches.hasNext())
        device = matches.next().captured(1);
    return device;
}

bool StrongswanTunnel::start(const QString& host, const QString& user, const QString& password,
                             QString& detail)
{
    stop();
    stopLeftover(m_paths);
    static const QRegularExpression hostName(QStringLiteral("^[A-Za-z0-9.:-]{1,253}$"));
    if (!hostName.match(host).hasMatch() || user.isEmpty() || hasControlCharacters(user) ||
        hasControlCharacters(password)) {
        detail = QStringLiteral("unusable host name or credentials");
        return false;
    }
    // charon 5.9.8 crashes when it cannot open the TUN device: find out first.
    const int tun = ::open("/dev/net/tun", O_RDWR | O_CLOEXEC);
    if (tun < 0) {
        detail = QStringLiteral("/dev/net/tun: ") + QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    ::close(tun);
    if (!QFileInfo(m_paths.charon).isExecutable() || !QFileInfo(m_paths.swanctl).isExecutable()) {
        detail = QStringLiteral("strongSwan (charon, swanctl) is not installed");
        return false;
    }
    m_host = host;
    m_server = QHostAddress(host);
    if (m_server.isNull()) {
        const QHostInfo resolved = QHostInfo::fromName(host);
        for (const QHostAddress& address : resolved.addresses()) {
            if (address.protocol() == QAbstractSocket::IPv4Protocol) {
                m_server = address;
                break;
            }
        }
        if (m_server.isNull()) {
            detail = QStringLiteral("cannot resolve ") + host;
            return false;
        }
    }
    if (!prepareDirectory(detail) || !writeConfiguration(user, password, detail) ||
        !launch(detail) ||
        !swanctl({QStringLiteral("--load-all"), QStringLiteral("--noprompt"),
                  QStringLiteral("--file"),
                  m_paths.stateDirectory + QStringLiteral("/swanctl/swanctl.conf")},
                 20000, detail) ||
        !swanctl({QStringLiteral("--initiate"), QStringLiteral("--child"),
                  QLatin1String(connectionName), QStringLiteral("--timeout"),
                  QString::number(initiateLimitSeconds)},
                 (initiateLimitSeconds + 5) * 1000, detail)) {
        qWarning().noquote() << "IKEv2 tunnel to" << host << "failed:" << detail;
        stop();
        return false;
    }
    m_device = tunDeviceFromLog();
    if (m_device.isEmpty()) {
        detail = QStringLiteral("charon reported no TUN device");
        stop();
        return false;
    }
    qDebug().noquote() << "IKEv2 tunnel to" << host << "is up on" << m_device;
    return true;
}

void StrongswanTunnel::stop()
{
    if (m_pid > 0 && !m_device.isEmpty()) {
        // Tells the server at once instead of leaving it to notice the silence.
        QString ignored;
        swanctl({QStringLiteral("--terminate"), QStringLiteral("--ike"),
                 QLatin1String(connectionName), QStringLiteral("--timeout"), QStringLiteral("2")},
                4000, ignored);
    }
    if (m_pid > 0) {
        // charon hangs up its SAs when it is told to end; the TUN device goes with it.
        terminate(m_pid, 3000);
        m_pid = -1;
    }
    m_device.clear();
    if (QFileInfo::exists(m_paths.stateDirectory))
        stopLeftover(m_paths); // empties the directory: the password is gone with it
}

} // namespace tavero
