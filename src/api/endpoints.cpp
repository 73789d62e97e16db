#include "api/endpoints.h"

#include <QDebug>
#include <QStringList>
#include <QUrl>

namespace tavero {

namespace {

QString overridden(const char* variable, const QString& fallback, const QStringList& schemes)
{
    const QString value = qEnvironmentVariable(variable).trimmed();
    if (value.isEmpty())
        return fallback;
    const QUrl url(value, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || !schemes.contains(url.scheme())) {
        qWarning().noquote() << variable << "is not a valid" << schemes.join(QLatin1Char('/'))
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
    const QStringList secure{QStringLiteral("https")};
    endpoints.apiBaseUrl =
        withoutTrailingSlashes(overridden("TAVERO_API_URL", fallback.apiBaseUrl, secure));
    endpoints.ipInfoUrl = overridden("TAVERO_IPINFO_URL", fallback.ipInfoUrl, secure);
    endpoints.probeUrl = overridden("TAVERO_PROBE_URL", fallback.probeUrl,
                                    {QStringLiteral("http"), QStringLiteral("https")});
    endpoints.caFile = qEnvironmentVariable("TAVERO_CA_FILE").trimmed();
    return endpoints;
}

} // namespace tavero
