#include "cli/cliapp.h"

#include "api/iserverapi.h"
#include "app/settings.h"
#include "cli/clioutput.h"
#include "cli/commandlock.h"
#include "cli/connectsession.h"
#include "cli/exitcode.h"
#include "manager/serverlistqueries.h"
#include "manager/utils.h"
#include "manager/vpnmanager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QSettings>
#include <QTextStream>

namespace tavero::cli {
namespace {

QString managerText(const char* key)
{
    return QCoreApplication::translate("tavero::VpnManager", key);
}

// One country of a server list as the server page shows it, without the flag.
struct CountryRow {
    CountryInformation country;
    QVector<VpnServerInformation> servers; // by name
};

QVector<CountryRow> countryRows(const ServerListGettingResult& list)
{
    QVector<CountryRow> rows;
    for (const int id : ServerListQueries::countryIdsByName(list)) {
        rows.append({list.countriesById.value(id),
                     ServerListQueries::sortedByName(list.serversByCountry.value(id))});
    }
    return rows;
}

QJsonArray rowsToJson(const QVector<CountryRow>& rows)
{
    QJsonArray array;
    for (const CountryRow& row : rows) {
        const int best = ServerListQueries::bestServerIndex(row.servers);
        QJsonObject country{{QStringLiteral("code"), row.country.code},
                            {QStringLiteral("name"), row.country.name},
                            {QStringLiteral("servers"), row.servers.size()}};
        if (best >= 0) {
            country.insert(QStringLiteral("bestServer"), row.servers[best].name);
            country.insert(QStringLiteral("load"), row.servers[best].load);
            country.insert(QStringLiteral("loadText"),
                           ServerListQueries::loadingText(row.servers[best]));
        } else {
            country.insert(QStringLiteral("bestServer"), QJsonValue::Null);
            country.insert(QStringLiteral("load"), QJsonValue::Null);
            country.insert(QStringLiteral("loadText"), QString());
        }
        array.append(country);
    }
    return array;
}

QString rowsToText(const QString& title, const QVector<CountryRow>& rows)
{
    int nameWidth = 0;
    for (const CountryRow& row : rows)
        nameWidth = std::max(nameWidth, row.country.name.size());
    QString text;
    QTextStream stream(&text);
    stream << title << '\n';
    if (rows.isEmpty())
        stream << "  (none)\n";
    for (const CountryRow& row : rows) {
        const int best = ServerListQueries::bestServerIndex(row.servers);
        stream << "  " << row.country.code.leftJustified(4)
               << row.country.name.leftJustified(nameWidth) << "  ";
        if (best >= 0) {
            stream << ServerListQueries::loadingText(row.servers[best]).rightJustified(4) << "  "
                   << row.servers[best].name;
        } else {
            stream << "   -  no available server";
        }
        stream << '\n';
    }
    return text;
}

} // namespace

CliApp::CliApp(CliOptions options, CliOutput& output, IServerApi& api, ManagerFactory makeManager,
               PasswordSource readPassword)
    : m_options(std::move(options))
    , m_output(output)
    , m_api(api)
    , m_makeManager(std::move(makeManager))
    , m_readPassword(std::move(readPassword))
{}

CliApp::~CliApp()
{
    // The manager (and with it any tunnel and the kill switch's hold) goes before the lock.
    m_manager.reset();
    m_lock.reset();
}

QString CliApp::lockFilePath()
{
    const QSettings store(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("TAVERO"),
                          QStringLiteral("TAVERO"));
    return QFileInfo(store.fileName()).absolutePath() + QStringLiteral("/tavero-cli.lock");
}

int CliApp::run()
{
    switch (m_options.command) {
    case CliOptions::Command::Help:
    case CliOptions::Command::Version:
        return printInformation(m_options, m_output);
    case CliOptions::Command::Login:
        return login();
    case CliOptions::Command::Servers:
        return servers();
    case CliOptions::Command::Connect:
        return connect();
    case CliOptions::Command::Status:
        return status();
    case CliOptions::Command::Logout:
        return logout();
    }
    return Failure;
}

int CliApp::printInformation(const CliOptions& options, CliOutput& output)
{
    if (options.command == CliOptions::Command::Help) {
        output.result({{QStringLiteral("usage"), CliOptions::usage()}}, CliOptions::usage());
    } else {
        output.result({{QStringLiteral("version"), QCoreApplication::applicationVersion()}},
                      QStringLiteral("tavero-cli %1").arg(QCoreApplication::applicationVersion()));
    }
    return Success;
}

void CliApp::requestStop(int signalNumber)
{
    if (m_forwardStop)
        m_forwardStop(signalNumber);
    else if (m_pendingStop == 0)
        m_pendingStop = signalNumber;
}

int CliApp::prepareManager()
{
    const QString path = lockFilePath();
    QDir().mkpath(QFileInfo(path).absolutePath());
    m_lock = std::make_unique<CommandLock>(path);
    // Held for as long as a connect runs.
    const CommandLock::State state = m_lock->tryLock();
    if (state != CommandLock::State::Held) {
        const int code = state == CommandLock::State::Busy ? Busy : Failure;
        m_output.error(code == Busy ? QStringLiteral("another tavero-cli command is managing "
                                                     "the tunnel (lock %1)")
                                          .arg(path)
                                    : QStringLiteral("cannot create the lock %1").arg(path),
                       code);
        m_lock.reset();
        return code;
    }
    m_manager = m_makeManager ? m_makeManager() : nullptr;
    if (!m_manager) {
        m_output.error(QStringLiteral("cannot set up the VPN manager"), Failure);
        return Failure;
    }
    return Success;
}

int CliApp::prepareLoggedInManager()
{
    const int code = prepareManager();
    return code == Success ? logInFromStoredToken() : code;
}

int CliApp::logInFromStoredToken()
{
    if (m_manager->settings().token().isEmpty()) {
        m_output.error(QStringLiteral("not logged in: run tavero-cli login EMAIL"), NotLoggedIn);
        return NotLoggedIn;
    }
    const OperationResult result = m_manager->tryAutoLoginOnRestart();
    if (result.isSuccess)
        return Success;
    if (result.code == OperationResult::LoginRefused) {
        m_output.error(
            QStringLiteral("the stored log-in was not accepted: run tavero-cli login EMAIL"),
            NotLoggedIn);
        return NotLoggedIn;
    }
    if (result.code == OperationResult::NoInternet) {
        // One more probe, on this failure path only, tells a missing network from a service
        // that cannot be reached.
        m_output.error(m_manager->isThereInternet()
                           ? QStringLiteral("the service cannot be reached; try again later")
                           : managerText("warning.connection_problems_check_internet_connection"),
                       NoConnection);
        return NoConnection;
    }
    m_output.error(result.message, Failure);
    return Failure;
}

int CliApp::login()
{
    const int prepared = prepareManager();
    if (prepared != Success)
        return prepared;
    QString password;
    if (!m_readPassword || !m_readPassword(password) || password.isEmpty()) {
        m_output.error(QStringLiteral("no password given (standard input or the prompt)"),
                       UsageError);
        return UsageError;
    }
    const OperationResult result = m_manager->loginByEmail(m_options.email, password);
    password.fill(QLatin1Char('\0'));
    if (!result.isSuccess) {
        const int code = exitCodeFor(result, Failure);
        m_output.error(result.message, code);
        return code;
    }
    const QString server = m_manager->vpnServers().currServer().name;
    m_output.result(
        {{QStringLiteral("email"), m_options.email}, {QStringLiteral("server"), server}},
        QStringLiteral("Logged in as %1; current server %2")
            .arg(m_options.email, server.isEmpty() ? QStringLiteral("none") : server));
    return Success;
}

int CliApp::servers()
{
    const int code = prepareLoggedInManager();
    if (code != Success)
        return code;
    VpnServerSelector& selector = m_manager->vpnServers();
    // The server page's rows without flags: the terminal has no use for them.
    const QVector<CountryRow> recommended = countryRows(selector.recommendedServers());
    const QVector<CountryRow> all = countryRows(selector.servers());
    const QString current = selector.currServer().name;
    m_output.result({{QStringLiteral("current"), current},
                     {QStringLiteral("recommended"), rowsToJson(recommended)},
                     {QStringLiteral("all"), rowsToJson(all)}},
                    rowsToText(QStringLiteral("Recommended"), recommended) +
                        rowsToText(QStringLiteral("All countries"), all) +
                        QStringLiteral("Current server: %1")
                            .arg(current.isEmpty() ? QStringLiteral("none") : current));
    return Success;
}

int CliApp::chooseCountry(const QString& code)
{
    VpnServerSelector& selector = m_manager->vpnServers();
    // Codes are matched regardless of case ("de" finds "DE") and then used as the service sent
    // them.
    QString exact;
    for (const ServerListGettingResult* list :
         {&selector.recommendedServers(),
          static_cast<const ServerListGettingResult*>(&selector.servers())}) {
        for (auto it = list->countriesByCode.cbegin();
             exact.isEmpty() && it != list->countriesByCode.cend(); ++it) {
            if (it.key().compare(code, Qt::CaseInsensitive) == 0)
                exact = it.key();
        }
    }
    QString name =
        ServerListQueries::bestServerNameByCountryCode(selector.recommendedServers(), exact);
    if (name.isEmpty())
        name = ServerListQueries::bestServerNameByCountryCode(selector.servers(), exact);
    if (exact.isEmpty() || name.isEmpty()) {
        const QString message =
            exact.isEmpty()
                ? QStringLiteral("no country with the code %1").arg(code)
                : QCoreApplication::translate(
                      "QObject", "warning.no_server_available_in_country_select_another");
        m_output.error(message, NoServerInCountry);
        return NoServerInCountry;
    }
    selector.setCurrServer(name);
    return Success;
}

int CliApp::connect()
{
    int code = prepareLoggedInManager();
    if (code != Success)
        return code;
    // The same repair of the stored protocol choice the graphical client makes at start.
    ISettings& settings = m_manager->settings();
    const QFlags<ProtocolType> usable = utils::usableProtocolTypes(settings.protocolTypes());
    if (usable != settings.protocolTypes())
        settings.setProtocolTypes(usable);
    if (!m_options.country.isEmpty()) {
        code = chooseCountry(m_options.country);
        if (code != Success)
            return code;
    }
    ConnectSession session(*m_manager, m_output);
    m_forwardStop = [&session](int signalNumber) { session.requestStop(signalNumber); };
    if (m_pendingStop != 0)
        session.requestStop(m_pendingStop);
    code = session.run();
    m_forwardStop = nullptr;
    return code;
}

int CliApp::status()
{
    Settings settings;
    const QString email = settings.getEmail();
    const bool loggedIn = !settings.token().isEmpty();
    const QString server = settings.serverName();
    const IpGettingResult ip = m_api.receiveIp();
    const bool known = ip.status == RequestResult::Ok;
    const bool isProtected = known && ip.isProtected;
    const int code = !known ? NoConnection : (isProtected ? Success : NotProtected);

    QJsonObject json{{QStringLiteral("email"), email},
                     {QStringLiteral("loggedIn"), loggedIn},
                     {QStringLiteral("server"), server},
                     {QStringLiteral("killSwitch"), settings.isKillSwitch()},
                     {QStringLiteral("protected"), isProtected}};
    json.insert(QStringLiteral("ip"), known ? QJsonValue(ip.ip) : QJsonValue(QJsonValue::Null));
    json.insert(QStringLiteral("countryCode"),
                known ? QJsonValue(ip.countryCode) : QJsonValue(QJsonValue::Null));
    const QString failure = managerText("warning.can_not_get_connection_info");
    if (!known) {
        json.insert(QStringLiteral("ok"), false);
        json.insert(QStringLiteral("error"), failure);
        json.insert(QStringLiteral("exitCode"), code);
    }
    const QString none = QStringLiteral("none");
    const QString text =
        QStringLiteral("Account:    %1 (%2)\nServer:     %3\nIP address: %4\nProtected:  %5")
            .arg(email.isEmpty() ? none : email,
                 loggedIn ? QStringLiteral("logged in") : QStringLiteral("logged out"),
                 server.isEmpty() ? none : server,
                 known ? QStringLiteral("%1 (%2)").arg(ip.ip, ip.countryCode) : failure,
                 known ? (isProtected ? QStringLiteral("yes") : QStringLiteral("no"))
                       : QStringLiteral("unknown"));
    m_output.result(json, text);
    return code;
}

int CliApp::logout()
{
    // What the settings dialog's log-out does: the token goes, the e-mail address stays.
    Settings settings;
    settings.setToken(QString());
    const QString email = settings.getEmail();
    m_output.result({{QStringLiteral("email"), email}},
                    email.isEmpty()
                        ? QStringLiteral("Logged out")
                        : QStringLiteral("Logged out; %1 stays as the e-mail address").arg(email));
    return Success;
}

} // namespace tavero::cli
