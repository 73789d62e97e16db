#include "tokenstore.h"

#include <array>
#include <openssl/rand.h>
#include <stdexcept>

namespace tavero::devservice {

TokenStore::TokenStore(std::chrono::seconds lifetime)
    : m_lifetime(lifetime)
{}

std::string TokenStore::randomToken()
{
    std::array<unsigned char, 24> bytes{};
    if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1)
        throw std::runtime_error("no random bytes for a token");
    static const char digits[] = "0123456789abcdef";
    std::string token;
    for (const unsigned char byte : bytes) {
        token += digits[byte >> 4];
        token += digits[byte & 0x0f];
    }
    return token;
}

std::string TokenStore::issue(const std::string& email)
{
    const std::string token = randomToken();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_tokens[token] = Entry{email, Clock::now() + m_lifetime, false};
    return token;
}

TokenStore::State TokenStore::check(const std::string& token, std::string* email) const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_tokens.find(token);
    if (found == m_tokens.end())
        return State::Unknown;
    if (email)
        *email = found->second.email;
    return Clock::now() >= found->second.expiresAt ? State::Expired : State::Valid;
}

std::optional<std::string> TokenStore::refresh(const std::string& token)
{
    const std::string renewed = randomToken();
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_tokens.find(token);
    if (found == m_tokens.end() || found->second.revoked)
        return std::nullopt;
    const std::string email = found->second.email;
    m_tokens.erase(found);
    m_tokens[renewed] = Entry{email, Clock::now() + m_lifetime, false};
    return renewed;
}

void TokenStore::expireAll(bool revoke)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto now = Clock::now();
    for (auto& [token, entry] : m_tokens) {
        entry.expiresAt = now;
        entry.revoked = entry.revoked || revoke;
    }
}

void TokenStore::setLifetime(std::chrono::seconds lifetime)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_lifetime = lifetime;
}

std::chrono::seconds TokenStore::lifetime() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_lifetime;
}

} // namespace tavero::devservice
