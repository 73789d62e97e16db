#pragma once

#include <QString>

namespace tavero {

// A client configuration as the stand-in understands it: the directives of the client's
// templates, the remote host and port, and the inline ca/cert/key blocks. `load` checks the file
// the way OpenVPN would refuse it and leaves OpenVPN-like error lines in `errors()`.
class OpenVpnConfigFile {
public:
    bool load(const QString& path);

    QString errors() const { return m_errors; }
    QString remoteHost() const { return m_remoteHost; }
    int remotePort() const { return m_remotePort; }
    // "udp" or "tcp".
    QString protocol() const { return m_protocol; }
    bool usesCompression() const { return m_compression; }

private:
    bool fail(const QString& text);
    bool checkDirective(const QStringList& words, int lineNumber);

    QString m_path;
    QString m_errors;
    QString m_remoteHost;
    int m_remotePort = 0;
    QString m_protocol;
    bool m_client = false;
    bool m_tun = false;
    bool m_compression = false;
};

} // namespace tavero
