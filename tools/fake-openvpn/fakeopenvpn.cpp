#include "fakeopenvpn.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTimer>
#include <cstdio>

namespace tavero {

namespace {

// One OpenVPN-style log line, flushed at once (the reader is a pipe).
void say(const QString& text)
{
    const QString stamp =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    for (const QString& line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        std::fprintf(stdout, "%s %s\n", qPrintable(stamp), qPrintable(line));
    }
    std::fflush(stdout);
}

std::chrono::milliseconds toMilliseconds(double seconds)
{
    return std::chrono::milliseconds(qint64(seconds * 1000));
}

} // namespace

FakeOpenVpn::FakeOpenVpn(const OpenVpnConfigFile& config, QString scenario, QString tunnel)
    : m_config(config)
    , m_scenario(std::move(scenario))
    , m_tunnel(std::move(tunnel))
{
    QObject::connect(&m_control, &QTcpSocket::connected, this, [this] {
        m_control.write(QStringLiteral("HELLO %1 %2\n")
                            .arg(m_config.remoteHost(), m_config.protocol())
                            .toLatin1());
    });
    QObject::connect(&m_control, &QTcpSocket::readyRead, this, &FakeOpenVpn::onControlReadable);
    QObject::connect(&m_control, &QTcpSocket::disconnected, this, &FakeOpenVpn::onControlClosed);
    QObject::connect(&m_control, &QTcpSocket::errorOccurred, this, [this] {
        if (!m_accepted) {
            say(QStringLiteral("TCP: connect to [AF_INET]%1 failed: %2")
                    .arg(m_tunnel, m_control.errorString()));
            say(QStringLiteral("SIGUSR1[connection failed(soft),connection-reset] received, "
                               "process restarting"));
            say(QStringLiteral("Connection failed, will try again in 5 seconds"));
            m_control.abort();
            QTimer::singleShot(5000, this, &FakeOpenVpn::connectControl);
        }
    });
}

FakeOpenVpn::~FakeOpenVpn()
{
    // The socket is destroyed after this object's body: it must not call back into it.
    QObject::disconnect(&m_control, nullptr, this, nullptr);
}

bool FakeOpenVpn::start()
{
    const QString name = m_scenario.section(QLatin1Char(':'), 0, 0);
    const QString number = m_scenario.section(QLatin1Char(':'), 1);
    bool numberOk = true;
    if (!number.isEmpty()) {
        m_seconds = number.toDouble(&numberOk);
    }
    if (!numberOk || m_seconds < 0) {
        say(QStringLiteral("stand-in: bad scenario number in '%1'").arg(m_scenario));
        return false;
    }

    if (name == QLatin1String("success") || name.isEmpty()) {
        printHeader();
        establish();
    } else if (name == QLatin1String("error")) {
        // Like an OpenVPN without the rights to create a tun device; it stays until killed.
        printHeader();
        say(QStringLiteral("ERROR: Cannot ioctl TUNSETIFF tun: Operation not permitted "
                           "(errno=1)"));
    } else if (name == QLatin1String("exit")) {
        QTimer::singleShot(0, [] { QCoreApplication::exit(1); });
    } else if (name == QLatin1String("silence")) {
        // Prints nothing at all and stays.
    } else if (name == QLatin1String("ipv6-error")) {
        printHeader();
        say(QStringLiteral("net_addr_v6_add: fd00:8::2/64 dev tun0\n"
                           "ERROR: Linux route add command failed: ipv6 command failed"));
        QTimer::singleShot(toMilliseconds(number.isEmpty() ? 1.0 : m_seconds), this,
                           &FakeOpenVpn::establish);
    } else if (name == QLatin1String("slow-start")) {
        printHeader();
        QTimer::singleShot(toMilliseconds(m_seconds), this, &FakeOpenVpn::establish);
    } else if (name == QLatin1String("break-after")) {
        printHeader();
        establish();
    } else {
        say(QStringLiteral("stand-in: unknown scenario '%1'").arg(m_scenario));
        return false;
    }
    return true;
}

void FakeOpenVpn::printHeader()
{
    if (m_config.usesCompression()) {
        say(QStringLiteral("WARNING: Compression for receiving enabled. Compression has been used "
                           "in the past to break encryption. Sent packets are not compressed "
                           "unless \"allow-compression yes\" is also set."));
    }
    say(QStringLiteral("OpenVPN 2.6.14 x86_64-pc-linux-gnu [SSL (OpenSSL)] [LZO] [LZ4] [EPOLL] "
                       "[PKCS11] [MH/PKTINFO] [AEAD] [DCO] (Tavero stand-in)\n"
                       "library versions: OpenSSL 3.0, LZO 2.10\n"
                       "TCP/UDP: Preserving recently used remote address: [AF_INET]%1:%2")
            .arg(m_config.remoteHost())
            .arg(m_config.remotePort()));
}

void FakeOpenVpn::establish()
{
    const QString link = m_config.protocol() == QLatin1String("tcp")
                             ? QStringLiteral("TCPv4_CLIENT")
                             : QStringLiteral("UDPv4");
    say(QStringLiteral("%1 link local: (not bound)\n"
                       "%1 link remote: [AF_INET]%2:%3\n"
                       "[tavero-vpn-server] Peer Connection Initiated with [AF_INET]%2:%3\n"
                       "TUN/TAP device tun0 opened")
            .arg(link, m_config.remoteHost())
            .arg(m_config.remotePort()));
    if (m_tunnel.isEmpty()) {
        completed();
    } else {
        connectControl();
    }
}

void FakeOpenVpn::connectControl()
{
    const int colon = m_tunnel.lastIndexOf(QLatin1Char(':'));
    bool portOk = false;
    const int port = m_tunnel.mid(colon + 1).toInt(&portOk);
    if (colon <= 0 || !portOk || port <= 0 || port > 65535) {
        say(QStringLiteral("stand-in: TAVERO_FAKE_OPENVPN_TUNNEL must be HOST:PORT, not '%1'")
                .arg(m_tunnel));
        QCoreApplication::exit(1);
        return;
    }
    m_reply.clear();
    m_control.connectToHost(m_tunnel.left(colon), quint16(port));
}

void FakeOpenVpn::onControlReadable()
{
    m_reply += m_control.readAll();
    if (m_accepted || !m_reply.contains('\n')) {
        return;
    }
    if (m_reply.startsWith("OK\n")) {
        m_accepted = true;
        completed();
    } else {
        m_control.abort();
        breakTunnel(QStringLiteral("AUTH: Received control message: AUTH_FAILED"));
    }
}

void FakeOpenVpn::onControlClosed()
{
    if (m_accepted) {
        breakTunnel(QStringLiteral("Connection reset, restarting [0]"));
    }
}

void FakeOpenVpn::completed()
{
    say(QStringLiteral("Initialization Sequence Completed"));
    if (m_scenario.startsWith(QLatin1String("break-after"))) {
        QTimer::singleShot(toMilliseconds(m_seconds), this, [this] {
            breakTunnel(QStringLiteral("[tavero-vpn-server] Inactivity timeout (--ping-restart), "
                                       "restarting"));
        });
    }
}

void FakeOpenVpn::breakTunnel(const QString& reason)
{
    say(reason);
    say(QStringLiteral("SIGTERM[soft,tunnel-broken] received, process exiting"));
    QCoreApplication::exit(1);
}

} // namespace tavero
