#include "ipv4pool.h"

#include <arpa/inet.h>

namespace tavero::devservice {

std::optional<std::uint32_t> Ipv4Pool::parseAddress(const std::string& address)
{
    std::string text = address;
    const std::string mapped = "::ffff:";
    if (text.compare(0, mapped.size(), mapped) == 0)
        text = text.substr(mapped.size());
    in_addr parsed{};
    if (inet_pton(AF_INET, text.c_str(), &parsed) != 1)
        return std::nullopt;
    return ntohl(parsed.s_addr);
}

std::optional<Ipv4Pool> Ipv4Pool::parse(const std::string& cidr)
{
    const auto slash = cidr.find('/');
    if (slash == std::string::npos)
        return std::nullopt;
    const auto network = parseAddress(cidr.substr(0, slash));
    const std::string bitsText = cidr.substr(slash + 1);
    if (!network || bitsText.empty() || bitsText.size() > 2 ||
        bitsText.find_first_not_of("0123456789") != std::string::npos)
        return std::nullopt;
    const int bits = std::stoi(bitsText);
    if (bits > 32)
        return std::nullopt;
    Ipv4Pool pool;
    pool.m_empty = false;
    pool.m_mask = bits == 0 ? 0 : ~std::uint32_t{0} << (32 - bits);
    pool.m_network = *network & pool.m_mask;
    pool.m_text = cidr;
    return pool;
}

bool Ipv4Pool::contains(const std::string& address) const
{
    if (m_empty)
        return false;
    const auto parsed = parseAddress(address);
    return parsed && (*parsed & m_mask) == m_network;
}

} // namespace tavero::devservice
