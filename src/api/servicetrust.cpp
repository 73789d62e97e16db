#include "api/servicetrust.h"

#include "api/endpoints.h"

#include <QDebug>
#include <QFile>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QNetworkRequest>
#include <QSet>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QStringList>
#include <QUrl>
#include <QWaitCondition>

namespace tavero {

namespace {

struct TrustTable {
    QMutex mutex;
    QWaitCondition readDone;
    QHash<QString, QList<QSslCertificate>> byAuthority; // "host:port" -> the CAs trusted there
    // Files (with their endpoints) trusted or being read: a later client reads nothing.
    QSet<QString> added;
    int reading = 0;
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
    if (reserve(endpoints))
        read(endpoints);
}

std::thread ServiceTrust::addInBackground(const Endpoints& endpoints)
{
    const bool reserved = reserve(endpoints);
    return std::thread([endpoints, reserved] {
        if (reserved)
            read(endpoints);
        QSslSocket::supportsSsl();
    });
}

QString ServiceTrust::key(const Endpoints& endpoints)
{
    return QStringList{endpoints.caFile, endpoints.apiBaseUrl, endpoints.ipInfoUrl,
                       endpoints.probeUrl}
        .join(QLatin1Char('|'));
}

bool ServiceTrust::reserve(const Endpoints& endpoints)
{
    if (endpoints.caFile.isEmpty())
        return false;
    TrustTable& table = trustTable();
    const QMutexLocker locker(&table.mutex);
    if (table.added.contains(key(endpoints)))
        return false;
    table.added.insert(key(endpoints));
    ++table.reading;
    return true;
}

void ServiceTrust::read(const Endpoints& endpoints)
{
    QList<QSslCertificate> certificates;
    QFile file(endpoints.caFile);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "TAVERO_CA_FILE" << endpoints.caFile
                             << "cannot be read:" << file.errorString();
    } else {
        certificates = QSslCertificate::fromData(file.readAll(), QSsl::Pem);
        if (certificates.isEmpty())
            qWarning().noquote() << "TAVERO_CA_FILE" << endpoints.caFile
                                 << "holds no PEM certificate";
    }

    TrustTable& table = trustTable();
    const QMutexLocker locker(&table.mutex);
    if (certificates.isEmpty())
        table.added.remove(key(endpoints)); // a later client reads it again, and warns again
    for (const QString& address : {endpoints.apiBaseUrl, endpoints.ipInfoUrl, endpoints.probeUrl}) {
        const QUrl url(address);
        if (url.host().isEmpty() || certificates.isEmpty())
            continue;
        QList<QSslCertificate>& trusted = table.byAuthority[authority(url)];
        for (const QSslCertificate& certificate : certificates) {
            if (!trusted.contains(certificate))
                trusted.append(certificate);
        }
    }
    --table.reading;
    table.readDone.wakeAll();
}

void ServiceTrust::apply(QNetworkRequest& request)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    TrustTable& table = trustTable();
    {
        QMutexLocker locker(&table.mutex);
        while (table.reading > 0)
            table.readDone.wait(&table.mutex);
        const auto found = table.byAuthority.constFind(authority(request.url()));
        if (found != table.byAuthority.cend())
            configuration.setCaCertificates(*found);
    }
    request.setSslConfiguration(configuration);
}

} // namespace tavero
