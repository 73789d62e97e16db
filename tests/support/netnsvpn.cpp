#include "support/netnsvpn.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>

namespace tavero::test {

NetnsVpn::NetnsVpn(QString scriptPath)
    : m_scriptPath(std::move(scriptPath))
{}

NetnsVpn::~NetnsVpn()
{
    stop();
}

NetnsVpn::Outcome NetnsVpn::start(const QString& workDirectory, int timeoutMs)
{
    m_workDirectory = workDirectory;
    m_script.setProcessChannelMode(QProcess::SeparateChannels);
    m_script.start(QStringLiteral("bash"), {m_scriptPath, QStringLiteral("serve"), workDirectory});
    QElapsedTimer timer;
    timer.start();
    QByteArray out;
    while (!out.contains('\n') && timer.elapsed() < timeoutMs) {
        if (m_script.state() == QProcess::NotRunning)
            break;
        m_script.waitForReadyRead(200);
        out += m_script.readAllStandardOutput();
    }
    if (out.startsWith("READY ")) {
        m_ready = QString::fromUtf8(out.trimmed());
        return Outcome::Running;
    }
    if (m_script.state() != QProcess::NotRunning) {
        m_reason = QStringLiteral("netns-vpn did not report ready in time");
        stop();
        return Outcome::Failed;
    }
    m_reason = QString::fromUtf8(m_script.readAllStandardError()).trimmed();
    if (m_script.error() == QProcess::FailedToStart)
        m_reason = m_script.errorString();
    return m_script.exitStatus() == QProcess::NormalExit && m_script.exitCode() == 77
               ? Outcome::Unsupported
               : Outcome::Failed;
}

void NetnsVpn::stop()
{
    if (m_script.state() == QProcess::NotRunning)
        return;
    // Closing its input is the script's cue to remove the namespaces; never kill it outright,
    // which would skip that.
    m_script.closeWriteChannel();
    if (!m_script.waitForFinished(30000)) {
        m_script.terminate();
        m_script.waitForFinished(30000);
    }
}

QString NetnsVpn::value(const QString& key) const
{
    const QRegularExpression pair(
        QStringLiteral("(?:^|\\s)%1=(\\S+)").arg(QRegularExpression::escape(key)));
    return pair.match(m_ready).captured(1);
}

QString NetnsVpn::pkiText(const QString& name) const
{
    QFile file(value(QStringLiteral("pki")) + QLatin1Char('/') + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

QString NetnsVpn::serverLog(const QString& protocol, int lines) const
{
    QFile file(m_workDirectory + QStringLiteral("/server-%1.log").arg(protocol));
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QStringList all = QString::fromLocal8Bit(file.readAll()).split('\n');
    return all.mid(std::max(0, int(all.size()) - lines)).join('\n');
}

AccountInfoGettingResult NetnsVpn::accountInfo() const
{
    AccountInfoGettingResult account;
    account.status = RequestResult::Ok;
    account.caCertificate = pkiText(QStringLiteral("ca.pem"));
    account.publicKey = pkiText(QStringLiteral("client1.pem"));
    account.privateKey = pkiText(QStringLiteral("client1.key"));
    return account;
}

VpnServerInformation NetnsVpn::server() const
{
    VpnServerInformation record;
    record.name = QStringLiteral("netns");
    record.host = host();
    record.hasOvpnConfig = true;
    return record;
}

int NetnsVpn::runInClient(const QStringList& command, QString* output) const
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("ip"),
                  QStringList{QStringLiteral("netns"), QStringLiteral("exec"), clientNamespace()} +
                      command);
    if (!process.waitForFinished(30000)) {
        process.kill();
        process.waitForFinished();
        return -1;
    }
    if (output)
        *output = QString::fromLocal8Bit(process.readAll());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QStringList NetnsVpn::clientTunDevices() const
{
    QString listing;
    runInClient({QStringLiteral("ip"), QStringLiteral("-o"), QStringLiteral("link"),
                 QStringLiteral("show")},
                &listing);
    QStringList devices;
    static const QRegularExpression device(QStringLiteral("^\\d+: (tun\\d+)[:@]"),
                                           QRegularExpression::MultilineOption);
    auto matches = device.globalMatch(listing);
    while (matches.hasNext())
        devices << matches.next().captured(1);
    return devices;
}

} // namespace tavero::test
