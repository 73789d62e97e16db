#include "api/servicetrust.h"

#include "api/endpoints.h"

#include <QDebug>
#include <QFile>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QNetworkRequest>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QUrl>

namespace tavero {

namespace {

struct TrustTable {
    QMutex mutex;
    QHash<QString, QList<QSslCertificate>> byAuthority; // "host:port" -> the CAs trusted there
};

TrustTable& trustTable()
{
    static TrustTable table;
    return table;
}

QString authority(const QUrl& url)
{
    const int defaultPort = url.scheme() == QLatin1String("https") ? 443 : 80;
    return QStringLiteral("%1:%2").arg(url.host().toLower()).arg(url.port(defaultPort));
}

} // namespace

void ServiceTrust::add(const Endpoints& endpoints)
{
    if (endpoints.caFile.isEmpty())
        return;
    QFile file(endpoints.caFile);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "TAVERO_CA_FILE" << endpoints.caFile
                             << "cannot be read:" << file.errorString();
        return;
    }
    const QList<QSslCertificate> certificates =
        QSslCertificate::fromData(file.readAll(), QSsl::Pem);
    if (certificates.isEmpty()) {
        qWarning().noquote() << "TAVERO_CA_FILE" << endpoints.caFile << "holds no PEM certificate";
        return;
    }
    TrustTable& table = trustTable();
    const QMutexLocker locker(&table.mutex);
    for (const QString& address : {endpoints.apiBaseUrl, endpoints.ipInfoUrl, endpoints.probeUrl}) {
        const QUrl url(address);
        if (url.host().isEmpty())
            continue;
        QList<QSslCertificate>& trusted = table.byAuthority[authority(url)];
        for (const QSslCertificate& certificate : certificates) {
            if (!trusted.contains(certificate))
                trusted.append(certificate);
        }
    }
}

void ServiceTrust::apply(QNetworkRequest& request)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    TrustTable& table = trustTable();
    {
        const QMutexLocker locker(&table.mutex);
        const auto found = table.byAuthority.constFind(authority(request.url()));
        if (found != table.byAuthority.cend())
            configuration.setCaCertificates(*found);
    }
    request.setSslConfiguration(configuration);
}

} // namespace tavero
