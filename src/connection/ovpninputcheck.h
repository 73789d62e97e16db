#pragma once

#include <QString>

namespace tavero {

// Decides whether values that arrive from the network may be written into an OpenVPN
// configuration, which a privileged openvpn then executes. Anything that could close an inline
// block or start a directive of its own is refused.
class OvpnInputCheck {
public:
    // A plain host name (dot-separated labels of letters, digits and inner hyphens, each at most
    // 63 characters, 253 in all, no trailing dot) or an IPv4 or IPv6 address without scope.
    static bool isPlainHost(const QString& host);

    // Zero or more PEM blocks ("-----BEGIN LABEL-----", base64 lines, "-----END LABEL-----" with
    // the same label of capitals, digits and single blanks), with nothing but blank lines around
    // and between them. Lines may end in CR LF. The base64 body of every block must decode and
    // must not be empty; the whole text is at most `maximumPemLength` characters. An empty text
    // (no material at all) passes: OpenVPN reports the missing certificate itself.
    static bool isPemText(const QString& text);

    static constexpr int maximumPemLength = 1024 * 1024;
};

} // namespace tavero
