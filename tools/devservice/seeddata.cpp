#include "seeddata.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <set>

namespace tavero::devservice {

namespace {

std::string text(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key)).toString().toStdString();
}

bool readFile(const std::string& path, std::string& content)
{
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    content = file.readAll().toStdString();
    return true;
}

} // namespace

std::optional<SeedData> SeedData::load(const std::string& file, std::string& error)
{
    std::string content;
    if (!readFile(file, content)) {
        error = "cannot read the seed file " + file;
        return std::nullopt;
    }
    QJsonParseError parseError{};
    const QJsonDocument document =
        QJsonDocument::fromJson(QByteArray::fromStdString(content), &parseError);
    if (!document.isObject()) {
        error = file + ": " + parseError.errorString().toStdString();
        return std::nullopt;
    }
    const QJsonObject root = document.object();
    SeedData seed;
    seed.homeCountryCode =
        QString::fromStdString(text(root.value("home").toObject(), "country_code"))
            .toUpper()
            .toStdString();

    for (const QJsonValue& value : root.value("accounts").toArray()) {
        const QJsonObject object = value.toObject();
        Account account;
        account.email = text(object, "email");
        account.password = text(object, "password");
        account.plan = text(object, "plan");
        const QJsonObject vpn = object.value("vpn").toObject();
        account.vpnUsername = text(vpn, "username");
        account.vpnPassword = text(vpn, "password");
        account.sharedKey = text(vpn, "shared_key");
        const QJsonObject pem = object.value("certificates").toObject();
        account.caFile = text(pem, "ca");
        account.certificateFile = text(pem, "cert");
        account.keyFile = text(pem, "key");
        seed.accounts.push_back(account);
    }
    for (const QJsonValue& value : root.value("countries").toArray()) {
        const QJsonObject object = value.toObject();
        seed.countries.push_back(
            {object.value("id").toInt(), text(object, "code"), text(object, "name")});
    }
    for (const QJsonValue& value : root.value("servers").toArray()) {
        const QJsonObject object = value.toObject();
        Server server;
        server.name = text(object, "name");
        server.countryId = object.value("country").toInt();
        server.load = object.value("load").toDouble();
        server.recommended = object.value("recommended").toBool();
        server.host = text(object, "host");
        server.ovpn = object.value("ovpn").toBool(true);
        server.exitIp = text(object, "exit");
        seed.servers.push_back(server);
    }
    const QJsonObject version = root.value("version").toObject();
    seed.version = {text(version, "version"), version.value("version_int").toInt(),
                    text(version, "download"), text(version, "changelog")};
    const QDir seedDir = QFileInfo(QString::fromStdString(file)).absoluteDir();
    seed.flagsDir = QDir::cleanPath(seedDir.absoluteFilePath(root.value("flags").toString("flags")))
                        .toStdString();

    std::set<int> countryIds;
    for (const Country& country : seed.countries) {
        if (!countryIds.insert(country.id).second) {
            error = "country id used twice: " + std::to_string(country.id);
            return std::nullopt;
        }
    }
    for (const Server& server : seed.servers) {
        if (!countryIds.count(server.countryId)) {
            error = "server " + server.name + " names an unknown country";
            return std::nullopt;
        }
    }
    if (seed.accounts.empty() || seed.servers.empty()) {
        error = "the seed needs at least one account and one server";
        return std::nullopt;
    }
    return seed;
}

bool SeedData::loadCertificates(const std::string& stateDir, std::string& error)
{
    for (Account& account : accounts) {
        const std::pair<const std::string*, std::string*> files[] = {
            {&account.caFile, &account.ca},
            {&account.certificateFile, &account.certificate},
            {&account.keyFile, &account.key}};
        for (const auto& [name, content] : files) {
            if (name->empty())
                continue; // an account without VPN material
            if (!readFile(stateDir + "/" + *name, *content)) {
                error = "cannot read " + stateDir + "/" + *name;
                return false;
            }
        }
    }
    return true;
}

const SeedData::Country* SeedData::country(int id) const
{
    for (const Country& country : countries) {
        if (country.id == id)
            return &country;
    }
    return nullptr;
}

const SeedData::Server* SeedData::serverByHost(const std::string& host) const
{
    for (const Server& server : servers) {
        if (server.host == host)
            return &server;
    }
    return nullptr;
}

const SeedData::Account* SeedData::account(const std::string& email) const
{
    for (const Account& account : accounts) {
        if (account.email == email)
            return &account;
    }
    return nullptr;
}

} // namespace tavero::devservice
