#pragma once

#include "api/endpoints.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>
#include <memory>

class QNetworkAccessManager;
class QUrlQuery;

namespace tavero::test {

// Runs the built tavero-devservice for one test: free loopback ports, a fresh state directory
// (so a fresh PKI), stopped on destruction. The binary comes from $TAVERO_DEVSERVICE (set by
// tavero_add_test(... DEVSERVICE)), else from the build tree. The control helpers block (at most
// 10 s each) and return false / -1 / empty when the service does not answer. Use one instance
// from the thread that created it.
class DevService {
public:
    struct Account {
        QString email;
        QString password;
        QString vpnUsername;
        QString vpnPassword;
        QString sharedKey;
    };
    // How the next replies of a path are spoiled (see tools/devservice/README.md).
    enum class Failure {
        Status,  // HTTP status (default 500) with {"error": ..., "message": "Injected failure"}
        Body,    // HTTP status (default 200) with exactly `body`
        Garbage, // 200 with a body that is not JSON
        Empty,   // 200 with an empty body
        Close,   // the connection closes before the body
        Delay,   // the normal reply after `delayMs`
    };
    // `delayMs` also delays the other kinds.

    explicit DevService(const QStringList& extraArguments = {});
    DevService(const DevService&) = delete;
    DevService& operator=(const DevService&) = delete;
    ~DevService();

    bool isRunning() const;
    QString errorText() const { return m_error; }

    QString apiUrl() const { return readyValue("api"); }
    QString ipInfoUrl() const { return readyValue("ipinfo"); }
    QString probeUrl() const { return readyValue("probe"); }
    QString caFile() const { return readyValue("ca"); }
    QString controlUrl() const { return readyValue("control"); }
    QString stateDir() const { return readyValue("state"); }
    QString tunnelHost() const;
    quint16 tunnelPort() const;
    // All four addresses; trusting the CA happens when a ServerApi is built with them.
    tavero::Endpoints endpoints() const;
    // Sets TAVERO_API_URL, TAVERO_IPINFO_URL, TAVERO_PROBE_URL and TAVERO_CA_FILE for this process.
    void exportEnvironment() const;

    // The seeded accounts (two, both with VPN certificates).
    QVector<Account> accounts() const { return m_accounts; }
    Account account(int index) const { return m_accounts.value(index); }

    // Control endpoints.
    bool expireTokens(bool revoke = false);
    bool setTokenLifetime(int seconds);
    bool failNext(const QString& path, int count, Failure failure, int httpStatus = 0,
                  const QByteArray& body = {}, int delayMs = 0);
    bool replyNext(const QString& path, int count, int httpStatus, const QByteArray& body);
    bool delayNext(const QString& path, int count, int delayMs);
    // Requests per path since the last reset ("/hotspots", "probe:/", ...); -1 on failure.
    int requestCount(const QString& path);
    // The last requests in full: objects with method, path, target, authorization, accept,
    // content_type, body.
    QJsonArray requests();
    bool dropTunnels();
    // Hosts of the open stand-in tunnels.
    QStringList openTunnels();
    // Faults, counters, token lifetime and home country back to their start values.
    bool reset();
    // SIGTERM; true when the service ended by itself with status 0.
    bool stop();

private:
    QJsonObject control(const QByteArray& method, const QString& path, const QUrlQuery& query,
                        const QByteArray& body = {});
    bool controlOk(const QByteArray& method, const QString& path, const QUrlQuery& query,
                   const QByteArray& body = {});
    QString readyValue(const char* key) const
    {
        return m_ready.value(QLatin1String(key)).toString();
    }

    QTemporaryDir m_stateDir;
    QProcess m_process;
    QJsonObject m_ready;
    QString m_error;
    QVector<Account> m_accounts;
    std::unique_ptr<QNetworkAccessManager> m_network;
};

} // namespace tavero::test
