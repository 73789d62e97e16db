#pragma once

#include "api/accountinfogettingresult.h"
#include "api/flagpicturesize.h"
#include "api/ipgettingresult.h"
#include "api/lastversiongettingresult.h"
#include "api/loginresult.h"
#include "api/serverlistgettingresult.h"

#include <QByteArray>

class LogoutBroadcaster;

// The one client of the VPN service. Every operation blocks the calling thread until its exchange
// ends and reports failures through the result's status, never by throwing.
class IServerApi {
public:
    virtual LoginResult loginByEmail(const QString& email, const QString& password) = 0;
    virtual IpGettingResult receiveIp() = 0;
    virtual LogoutBroadcaster& logoutBroadcaster() = 0;
    virtual QString token() = 0;
    virtual void setToken(const QString& token) = 0;
    virtual AccountInfoGettingResult receiveAccountInfo() = 0;
    virtual ServerListGettingResult receiveServerList() = 0;
    virtual ServerListGettingResult receiveRecommendedServerList(const QString& ip) = 0;
    virtual LastVersionGettingResult receiveLastVersion() = 0;
    // PNG bytes, empty on failure.
    virtual QByteArray receiveFlagPicture(const QString& countryCode, FlagPictureSize size) = 0;
    virtual bool isThereInternet() = 0;

protected:
    // The one implementation is owned by value by the programme assembly; nobody deletes through
    // this interface.
    ~IServerApi() = default;
};
