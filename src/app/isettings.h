#pragma once

#include "api/protocoltype.h"

#include <QFlags>
#include <QString>

namespace tavero {

// The user's persistent choices and login data. Every setter stores at once.
class ISettings {
public:
    virtual QString serverName() = 0;
    virtual void setServerName(const QString& name) = 0;
    virtual bool isAutoConnection() = 0;
    virtual void setAutoConnection(bool on) = 0;
    virtual bool isAutoLocation() = 0;
    virtual void setAutoLocation(bool on) = 0;
    virtual bool isKillSwitch() = 0;
    virtual void setKillSwitch(bool on) = 0;
    virtual bool isFirstRun() = 0;
    virtual void setIsFirstRun(bool firstRun) = 0;
    virtual QFlags<ProtocolType> protocolTypes() = 0;
    virtual void setProtocolTypes(QFlags<ProtocolType> types) = 0;
    virtual void setToken(const QString& token) = 0;
    virtual QString token() = 0;
    virtual QString getEmail() = 0;
    virtual void setEmail(const QString& email) = 0;
    virtual QString getSelectedLanguage() = 0;
    virtual void setSelectedLanguage(const QString& language) = 0;

protected:
    // The owner destroys the concrete object; nobody deletes through this interface.
    ~ISettings() = default;
};

} // namespace tavero
