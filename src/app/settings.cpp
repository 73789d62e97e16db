#include "app/settings.h"

#include "app/userfileaccess.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace tavero {
namespace {
const QString serverNameKey = QStringLiteral("server_name");
const QString autoConnectionKey = QStringLiteral("is_auto_connection");
const QString autoLocationKey = QStringLiteral("is_auto_location");
const QString killSwitchKey = QStringLiteral("is_kill_switch");
const QString protocolTypeKey = QStringLiteral("protocol_type");
const QString tokenKey = QStringLiteral("token");
const QString emailKey = QStringLiteral("email");
const QString firstRunKey = QStringLiteral("is_first_run");
const QString selectedLanguageKey = QStringLiteral("selected_language");

} // namespace

Settings::Settings()
{
    load();
}

void Settings::load()
{
    const QSettings store(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("TAVERO"),
                          QStringLiteral("TAVERO"));
    m_serverName = store.value(serverNameKey, QString()).toString();
    m_autoConnection = store.value(autoConnectionKey, m_autoConnection).toBool();
    m_autoLocation = store.value(autoLocationKey, m_autoLocation).toBool();
    m_killSwitch = store.value(killSwitchKey, m_killSwitch).toBool();
    m_protocolTypes =
        QFlags<ProtocolType>(store.value(protocolTypeKey, protocols::allProtocols).toInt());
    m_token = store.value(tokenKey, QString()).toString();
    m_email = store.value(emailKey, QString()).toString();
    m_firstRun = store.value(firstRunKey, m_firstRun).toBool();
    m_selectedLanguage = store.value(selectedLanguageKey, QString()).toString();
}

void Settings::save()
{
    QSettings store(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("TAVERO"),
                    QStringLiteral("TAVERO"));
    // A root copy writes as the user whose settings these are, so they stay the user's.
    const UserFileAccess asHomeUser(store.fileName());
    // The store holds the access token. QSettings replaces the file by a new one that keeps the
    // old one's rights, so a file made private before the first write stays private.
    const QString path = store.fileName();
    if (!QDir().mkpath(QFileInfo(path).absolutePath()) || !UserFileAccess::makePrivateFile(path))
        qWarning().noquote() << "Could not make the settings file private:" << path;
    store.setValue(serverNameKey, m_serverName);
    store.setValue(autoConnectionKey, m_autoConnection);
    store.setValue(autoLocationKey, m_autoLocation);
    store.setValue(killSwitchKey, m_killSwitch);
    store.setValue(protocolTypeKey, static_cast<int>(m_protocolTypes));
    store.setValue(tokenKey, m_token);
    store.setValue(emailKey, m_email);
    store.setValue(firstRunKey, m_firstRun);
    store.setValue(selectedLanguageKey, m_selectedLanguage);
    store.sync(); // while the file access is still the user's
}

QString Settings::serverName()
{
    return m_serverName;
}
void Settings::setServerName(const QString& name)
{
    m_serverName = name;
    save();
}

bool Settings::isAutoConnection()
{
    return m_autoConnection;
}
void Settings::setAutoConnection(bool on)
{
    m_autoConnection = on;
    save();
}

bool Settings::isAutoLocation()
{
    return m_autoLocation;
}
void Settings::setAutoLocation(bool on)
{
    m_autoLocation = on;
    save();
}

bool Settings::isKillSwitch()
{
    return m_killSwitch;
}
void Settings::setKillSwitch(bool on)
{
    m_killSwitch = on;
    save();
}

bool Settings::isFirstRun()
{
    return m_firstRun;
}
void Settings::setIsFirstRun(bool firstRun)
{
    m_firstRun = firstRun;
    save();
}

QFlags<ProtocolType> Settings::protocolTypes()
{
    return m_protocolTypes;
}
void Settings::setProtocolTypes(QFlags<ProtocolType> types)
{
    m_protocolTypes = types;
    save();
}

void Settings::setToken(const QString& token)
{
    m_token = token;
    save();
}
QString Settings::token()
{
    return m_token;
}

QString Settings::getEmail()
{
    return m_email;
}
void Settings::setEmail(const QString& email)
{
    m_email = email;
    save();
}

QString Settings::getSelectedLanguage()
{
    return m_selectedLanguage;
}
void Settings::setSelectedLanguage(const QString& language)
{
    m_selectedLanguage = language;
    save();
}

} // namespace tavero
