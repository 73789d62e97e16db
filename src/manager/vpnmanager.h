#pragma once

#include "api/accountinfogettingresult.h"
#include "api/flagpicturesize.h"
#include "api/ipgettingresult.h"
#include "api/loginresult.h"
#include "api/operationresult.h"
#include "app/settings.h"
#include "connection/connectionchain.h"
#include "connection/killswitcher.h"
#include "manager/vpnserverselector.h"
#include "platform/platforminjector.h"

#include <QObject>
#include <memory>

class IServerApi;
class LogoutBroadcaster;

namespace tavero {

class IPlatform;

// The facade every user interface talks to: login, connection, status texts and flag loading.
// Owns everything below the interface (platform, settings, selector, kill switch, chain) and turns
// service results into OperationResult values with translated messages. GUI thread only.
class VpnManager : public QObject {
    Q_OBJECT
public:
    // `platform` replaces the native platform (tests hand in a scripted one); `chainOptions`
    // shortens the chain's waits and points it at another OpenVPN program directory.
    explicit VpnManager(IServerApi& api, std::unique_ptr<IPlatform> platform = {},
                        ConnectionChain::Options chainOptions = {});
    ~VpnManager() override;
    Q_DISABLE_COPY_MOVE(VpnManager)

    IServerApi& getAPIService() { return m_api; }
    ISettings& settings() { return *m_settings; }
    IPlatform& platform() { return m_platform; }
    KillSwitcher& killSwitcher() { return m_killSwitcher; }
    ConnectionChain& connection() { return m_chain; }
    VpnServerSelector& vpnServers() { return m_selector; }
    LogoutBroadcaster& logoutBroadcaster();

    bool isConnected();
    bool isProtected();
    QString isProtectedText();
    QString countryCode() const;
    QString ipAdress() const;
    QString accountEmail() const { return m_account.email; }
    QString getCountryName();
    QString getLastConnectedCountryName();
    bool isThereInternet();
    QByteArray receiveFlagPicture(const QString& countryCode, FlagPictureSize size);
    bool isKillSwitch();
    bool killSwitchWasDisconnectingTheInternet() const { return m_killSwitcher.isInternetOff(); }
    bool isKillSwitchWasLastTime() const { return m_killSwitchWasLastTime; }
    void setKillSwitchFlag(bool acted) { m_killSwitchWasLastTime = acted; }
    bool isProgrammTermination() const { return m_isProgrammTermination; }

    OperationResult loginByEmail(const QString& email, const QString& password);
    // Logs in again with the stored token. A failure says why: `NoInternet` when the network or
    // the service cannot be reached, `LoginRefused` when the service refused the stored log-in,
    // `General` for anything else (an unreadable reply).
    OperationResult tryAutoLoginOnRestart();
    OperationResult doSomethingBeforeLogin();
    OperationResult doSomethingAfterLogin(const LoginResult& result, const QString& email);
    OperationResult loginResultToOperationResult(const LoginResult& result);
    OperationResult tryRequestResultToOperationResult(const RequestResult& result);
    void udpateIpInformation();
    OperationResult receiveIp();
    OperationResult receiveAccountInfo();
    OperationResult connect();
    OperationResult disconnect();
    void startImagesLoading();
    bool reestablishInternetConnection();
    void turnOnIsProgrammTermination();

public slots:
    void onServerWasChanged();

signals:
    void imageLoadingFinished();

private:
    OperationResult storedLoginFailure(int status);

    IServerApi& m_api;
    PlatformInjector m_platformInjector;
    IPlatform& m_platform;
    std::unique_ptr<Settings> m_settings;
    VpnServerSelector m_selector;
    IpGettingResult m_ipInformation;
    AccountInfoGettingResult m_account;
    KillSwitcher m_killSwitcher;
    ConnectionChain m_chain;
    bool m_isProgrammTermination = false;
    bool m_killSwitchWasLastTime = false;
};

} // namespace tavero
