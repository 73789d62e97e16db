#include "support/devservice.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTimer>
#include <QUrl>
#include <QUrlQuery>

namespace tavero::test {

namespace {

constexpr int startLimitMs = 60000;
constexpr int controlLimitMs = 10000;

QString devServiceProgram()
{
    const QString configured = qEnvironmentVariable("TAVERO_DEVSERVICE");
    if (!configured.isEmpty())
        return configured;
    return qEnvironmentVariable("TAVERO_TEST_BIN_DIR") +
           QStringLiteral("/tools/devservice/tavero-devservice");
}

// In the order of DevService::Failure.
const char* const failureNames[] = {"status", "body", "garbage", "empty", "close", "delay"};

} // namespace

DevService::DevService(const QStringList& extraArguments)
{
    const QString program = devServiceProgram();
    if (!m_stateDir.isValid() || !QFile::exists(program)) {
        m_error = QStringLiteral("no state directory, or no tavero-devservice at %1 (set "
                                 "TAVERO_DEVSERVICE)")
                      .arg(program);
        return;
    }
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel); // its errors in the test log
    m_process.start(program,
                    QStringList{"--state-dir", m_stateDir.filePath("state"), "--https-port", "0",
                                "--http-port", "0", "--tunnel-port", "0", "--exit-with-parent"} +
                        extraArguments);
    const QDeadlineTimer deadline(startLimitMs);
    while (!m_process.canReadLine() && m_process.state() != QProcess::NotRunning &&
           !deadline.hasExpired())
        m_process.waitForReadyRead(int(qMin<qint64>(deadline.remainingTime(), 1000)));
    const QByteArray line = m_process.readLine().trimmed();
    m_ready = QJsonDocument::fromJson(line).object();
    m_network = std::make_unique<QNetworkAccessManager>();
    const QJsonArray accounts = control("GET", "/accounts", {}).value("accounts").toArray();
    for (const QJsonValue& value : accounts) {
        const QJsonObject o = value.toObject();
        m_accounts.append({o.value("email").toString(), o.value("password").toString(),
                           o.value("vpn_username").toString(), o.value("vpn_password").toString(),
                           o.value("shared_key").toString()});
    }
    if (m_accounts.isEmpty()) {
        m_error = QStringLiteral("tavero-devservice did not start (ready line \"%1\", %2)")
                      .arg(QString::fromUtf8(line),
                           m_process.state() == QProcess::NotRunning
                               ? QStringLiteral("exit code %1").arg(m_process.exitCode())
                               : QStringLiteral("accounts not listed"));
        stop();
    }
}

DevService::~DevService()
{
    stop();
}

bool DevService::isRunning() const
{
    return m_error.isEmpty() && m_process.state() == QProcess::Running;
}

QString DevService::tunnelHost() const
{
    return readyValue("tunnel").section(':', 0, 0);
}

quint16 DevService::tunnelPort() const
{
    return quint16(readyValue("tunnel").section(':', 1, 1).toUInt());
}

tavero::Endpoints DevService::endpoints() const
{
    return {apiUrl(), ipInfoUrl(), probeUrl(), caFile()};
}

void DevService::exportEnvironment() const
{
    qputenv("TAVERO_API_URL", apiUrl().toUtf8());
    qputenv("TAVERO_IPINFO_URL", ipInfoUrl().toUtf8());
    qputenv("TAVERO_PROBE_URL", probeUrl().toUtf8());
    qputenv("TAVERO_CA_FILE", QFile::encodeName(caFile()));
}

QJsonObject DevService::control(const QByteArray& method, const QString& path,
                                const QUrlQuery& query, const QByteArray& body)
{
    if (!m_network || m_process.state() != QProcess::Running)
        return {};
    QUrl url(controlUrl() + path);
    url.setQuery(query);
    QNetworkRequest request(url);
    // Trust this service's CA for the control calls only; the process-wide TLS defaults stay
    // as the code under test leaves them.
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates(QSslCertificate::fromPath(caFile()));
    request.setSslConfiguration(tls);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    QNetworkReply* reply = m_network->sendCustomRequest(request, method, body);
    QEventLoop loop;
    QTimer::singleShot(controlLimitMs, &loop, &QEventLoop::quit);
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply->isFinished())
        loop.exec();
    const QByteArray answer = reply->isFinished() ? reply->readAll() : QByteArray();
    reply->abort();
    reply->deleteLater();
    return QJsonDocument::fromJson(answer).object();
}

bool DevService::controlOk(const QByteArray& method, const QString& path, const QUrlQuery& query,
                           const QByteArray& body)
{
    return control(method, path, query, body).value("ok").toBool();
}

bool DevService::expireTokens(bool revoke)
{
    return controlOk("POST", "/tokens/expire", revoke ? QUrlQuery{{"revoke", "1"}} : QUrlQuery());
}

bool DevService::setTokenLifetime(int seconds)
{
    return controlOk("POST", "/tokens/lifetime", {{"seconds", QString::number(seconds)}});
}

bool DevService::failNext(const QString& path, int count, Failure failure, int httpStatus,
                          const QByteArray& body, int delayMs)
{
    QUrlQuery query{{"path", path},
                    {"count", QString::number(count)},
                    {"mode", QString::fromLatin1(failureNames[int(failure)])}};
    if (httpStatus > 0)
        query.addQueryItem("status", QString::number(httpStatus));
    if (delayMs > 0)
        query.addQueryItem("delay_ms", QString::number(delayMs));
    return controlOk("POST", "/fail", query, body);
}

bool DevService::replyNext(const QString& path, int count, int httpStatus, const QByteArray& body)
{
    return failNext(path, count, Failure::Body, httpStatus, body);
}

bool DevService::delayNext(const QString& path, int count, int delayMs)
{
    return failNext(path, count, Failure::Delay, 0, {}, delayMs);
}

int DevService::requestCount(const QString& path)
{
    const QJsonObject answer = control("GET", "/counters", {});
    return answer.contains("counts") ? answer.value("counts").toObject().value(path).toInt(0) : -1;
}

QJsonArray DevService::requests()
{
    return control("GET", "/requests", {}).value("requests").toArray();
}

bool DevService::dropTunnels()
{
    return controlOk("POST", "/tunnel/drop", {});
}

QStringList DevService::openTunnels()
{
    QStringList hosts;
    for (const QJsonValue& tunnel : control("GET", "/tunnels", {}).value("tunnels").toArray())
        hosts << tunnel.toObject().value("host").toString();
    return hosts;
}

bool DevService::reset()
{
    return controlOk("POST", "/reset", {});
}

bool DevService::stop()
{
    m_network.reset(); // its kept-alive connection would hold up the service's shutdown
    if (m_process.state() == QProcess::NotRunning)
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    m_process.terminate();
    if (!m_process.waitForFinished(10000)) {
        m_process.kill();
        m_process.waitForFinished(5000);
        return false;
    }
    return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

} // namespace tavero::test
