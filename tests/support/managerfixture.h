#pragma once

#include "api/serverlistgettingresult.h"
#include "connection/connectionchain.h"
#include "support/fakeserverapi.h"

#include <memory>

namespace tavero {
class VpnManager;
}

namespace tavero::test {

class TestPlatform;

// A VPN manager over FakeServerApi and TestPlatform with a fresh settings store, for
// tests above the manager. The chain's keeper is slowed down so it never checks during a test,
// and the administrator answer is forced to yes so the chain offers IKEv2 on any machine. OpenVPN
// is not offered, so every attempt is an IKEv2 dial through TestPlatform.
class ManagerFixture {
public:
    ManagerFixture();
    ~ManagerFixture();
    ManagerFixture(const ManagerFixture&) = delete;
    ManagerFixture& operator=(const ManagerFixture&) = delete;

    FakeServerApi& api() { return m_api; }
    TestPlatform& platform() { return *m_platform; }
    VpnManager& manager() { return *m_managerView; }
    // Hands the manager (with the platform) to a new owner; manager() and platform() stay usable
    // for as long as that owner keeps it.
    std::unique_ptr<VpnManager> releaseManager();

    // Answers of a reachable service with an account that may connect: login accepted, account
    // with VPN data, IP check "protected" from `ip` (so every tunnel verifies), both lists.
    void answerReachable(const ServerListGettingResult& all,
                         const ServerListGettingResult& recommended,
                         const QString& ip = QStringLiteral("203.0.113.7"));
    // Logs in through the manager; fails the test (returns false) when that fails.
    bool logIn();
    // Connects through the manager; false when the chain did not reach Connected.
    bool connect();

    // Service operations that reach the network (token handling does not), summed.
    int exchanges() const;

    static ConnectionChain::Options quietChainOptions();

private:
    FakeServerApi m_api;
    TestPlatform* m_platform = nullptr; // owned by the manager
    std::unique_ptr<VpnManager> m_manager;
    VpnManager* m_managerView = nullptr;
};

} // namespace tavero::test
