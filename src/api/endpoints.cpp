#include "api/endpoints.h"

#include <QDebug>
#include <QUrl>

namespace tavero {

namespace {

QString overridden(const char* variable, const QString& fallback, const QString& scheme)
{
    const QString value = qEnvironmentVariable(variable).trimmed();
    if (value.isEmpty())
        return fallback;
    const QUrl url(value, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || url.scheme() != scheme) {
        qWarning().noquote() << variable << "is not a valid" << scheme
                             << "address, ignored:" << value;
        return fallback;
    }
    return value;
}

QString withoutTrailingSlashes(QString url)
{
    while (url.endsWith(QLatin1Char('/')))
        url.chop(1);
    return url;
}

} // namespace

Endpoints Endpoints::defaults()
{
    return {QStringLiteral("https://api.tavero.example"),
            QStringLiteral("https://ipinfo.tavero.example/json"),
            QStringLiteral("http://www.tavero.example/"), QString()};
}

Endpoints Endpoints::fromEnvironment()
{
    const Endpoints fallback = defaults();
    Endpoints endpoints;
    endpoints.apiBaseUrl = withoutTrailingSlashes(
        overridden("TAVERO_API_URL", fallback.apiBaseUrl, QStringLiteral("https")));
    endpoints.ipInfoUrl =
        overridden("TAVERO_IPINFO_URL", fallback.ipInfoUrl, QStringLiteral("https"));
    endpoints.probeUrl = overridden("TAVERO_PROBE_URL", fallback.probeUrl, QStringLiteral("http"));
    endpoints.caFile = qEnvironmentVariable("TAVERO_CA_FILE").trimmed();
    return endpoints;
}

} // namespace tavero
