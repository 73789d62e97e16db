#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace tavero::devservice {

// Access tokens as the service issues them: random, bound to an account, expiring after the
// lifetime, renewable by "/refresh" (the old token then stops working) until revoked.
class TokenStore {
public:
    enum class State { Valid, Expired, Unknown };
    using Clock = std::chrono::steady_clock;

    explicit TokenStore(std::chrono::seconds lifetime);

    std::string issue(const std::string& email);
    // The token's state; `email` receives its account when the token is known.
    State check(const std::string& token, std::string* email = nullptr) const;
    // A new token for a known, unrevoked token (valid or expired); nothing otherwise.
    std::optional<std::string> refresh(const std::string& token);
    // Every current token expires now; with `revoke` they cannot be renewed either.
    void expireAll(bool revoke);
    void setLifetime(std::chrono::seconds lifetime);
    std::chrono::seconds lifetime() const;

private:
    struct Entry {
        std::string email;
        Clock::time_point expiresAt;
        bool revoked = false;
    };

    static std::string randomToken();

    mutable std::mutex m_mutex;
    std::chrono::seconds m_lifetime;
    std::map<std::string, Entry> m_tokens;
};

} // namespace tavero::devservice
