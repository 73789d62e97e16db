#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tavero::devservice {

// An IPv4 network in CIDR notation ("10.8.0.0/24"); an empty pool contains nothing.
class Ipv4Pool {
public:
    Ipv4Pool() = default;
    static std::optional<Ipv4Pool> parse(const std::string& cidr);

    bool isEmpty() const { return m_empty; }
    // Also accepts IPv4-mapped IPv6 text ("::ffff:10.8.0.6").
    bool contains(const std::string& address) const;
    std::string text() const { return m_text; }

    static std::optional<std::uint32_t> parseAddress(const std::string& address);

private:
    bool m_empty = true;
    std::uint32_t m_network = 0;
    std::uint32_t m_mask = 0;
    std::string m_text;
};

} // namespace tavero::devservice
