#pragma once

#include "app/isettings.h"

namespace tavero {

// ISettings over QSettings("TAVERO", "TAVERO"), native format, per user. Every setter writes all
// nine values; a missing or unconvertible value reads as its default or its null conversion.
class Settings final : public ISettings {
public:
    Settings();
    virtual ~Settings() = default;

    QString serverName() override;
    void setServerName(const QString& name) override;
    bool isAutoConnection() override;
    void setAutoConnection(bool on) override;
    bool isAutoLocation() override;
    void setAutoLocation(bool on) override;
    bool isKillSwitch() override;
    void setKillSwitch(bool on) override;
    bool isFirstRun() override;
    void setIsFirstRun(bool firstRun) override;
    QFlags<ProtocolType> protocolTypes() override;
    void setProtocolTypes(QFlags<ProtocolType> types) override;
    void setToken(const QString& token) override;
    QString token() override;
    QString getEmail() override;
    void setEmail(const QString& email) override;
    QString getSelectedLanguage() override;
    void setSelectedLanguage(const QString& language) override;

    void load();
    void save();

private:
    QString m_serverName;
    bool m_autoConnection = false;
    bool m_autoLocation = false;
    bool m_killSwitch = false;
    QFlags<ProtocolType> m_protocolTypes = QFlags<ProtocolType>(protocols::allProtocols);
    QString m_token;
    QString m_email;
    bool m_firstRun = true;
    QString m_selectedLanguage;
};

} // namespace tavero
