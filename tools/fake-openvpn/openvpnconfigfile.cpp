#include "openvpnconfigfile.h"

#include "connection/ovpninputcheck.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QStringList>

namespace tavero {

namespace {

// Directive -> (fewest, most) parameters, for the directives the client's templates use.
const QHash<QString, QPair<int, int>>& knownDirectives()
{
    static const QHash<QString, QPair<int, int>> directives{
        {"client", {0, 0}},      {"dev", {1, 1}},           {"proto", {1, 1}},
        {"remote", {1, 3}},      {"resolv-retry", {1, 1}},  {"nobind", {0, 0}},
        {"persist-key", {0, 0}}, {"persist-tun", {0, 0}},   {"remote-cert-tls", {1, 1}},
        {"comp-lzo", {0, 1}},    {"compress", {0, 1}},      {"verb", {1, 1}},
        {"tun-mtu", {1, 1}},     {"tun-mtu-extra", {1, 1}}, {"mssfix", {0, 2}},
        {"ping", {1, 1}},        {"ping-restart", {1, 1}},  {"ping-timer-rem", {0, 0}},
        {"reneg-sec", {1, 2}},   {"pull", {0, 0}},          {"fast-io", {0, 0}},
        {"cipher", {1, 1}},
    };
    return directives;
}

const QStringList inlineBlocks{"ca", "cert", "key"};

} // namespace

bool OpenVpnConfigFile::fail(const QString& text)
{
    m_errors += text + QLatin1Char('\n');
    return false;
}

bool OpenVpnConfigFile::load(const QString& path)
{
    m_path = path;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(QStringLiteral("Options error: In [CMD-LINE]:1: Error opening configuration "
                                   "file: %1")
                        .arg(path));
    }
    const QStringList lines = QString::fromLatin1(file.readAll()).split(QLatin1Char('\n'));

    QHash<QString, QString> blocks;
    QString openBlock;
    QString blockText;
    for (int i = 0; i < lines.size(); ++i) {
        QString line = lines.at(i);
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
        if (!openBlock.isEmpty()) {
            if (line.trimmed() == QStringLiteral("</%1>").arg(openBlock)) {
                blocks.insert(openBlock, blockText);
                openBlock.clear();
            } else {
                blockText += line + QLatin1Char('\n');
            }
            continue;
        }
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char('#')) ||
            trimmed.startsWith(QLatin1Char(';'))) {
            continue;
        }
        static const QRegularExpression tag(QStringLiteral("^<([a-z-]+)>$"));
        const QRegularExpressionMatch opening = tag.match(trimmed);
        if (opening.hasMatch()) {
            openBlock = opening.captured(1);
            blockText.clear();
            if (!inlineBlocks.contains(openBlock)) {
                return fail(QStringLiteral("Options error: Unrecognized option or missing or "
                                           "extra parameter(s) in %1:%2: %3 (2.6.14)")
                                .arg(path)
                                .arg(i + 1)
                                .arg(openBlock));
            }
            continue;
        }
        if (!checkDirective(trimmed.split(QRegularExpression(QStringLiteral("\\s+"))), i + 1)) {
            return false;
        }
    }
    if (!openBlock.isEmpty()) {
        return fail(QStringLiteral("Options error: Closing tag </%1> not found").arg(openBlock));
    }
    if (!m_client || !m_tun || m_remoteHost.isEmpty() || m_protocol.isEmpty()) {
        return fail(QStringLiteral("Options error: a client needs client, dev tun, proto and "
                                   "remote (stand-in check)"));
    }
    for (const QString& name : inlineBlocks) {
        const QString text = blocks.value(name);
        if (text.trimmed().isEmpty()) {
            return fail(QStringLiteral("Options error: --%1 fails with '[[INLINE]]': No such file "
                                       "or directory (errno=2)")
                            .arg(name));
        }
        if (!OvpnInputCheck::isPemText(text)) {
            return fail(QStringLiteral("OpenSSL: error:0480006C:PEM routines::no start line\n"
                                       "Cannot load inline %1 file\n"
                                       "Exiting due to fatal error")
                            .arg(name));
        }
    }
    return true;
}

bool OpenVpnConfigFile::checkDirective(const QStringList& words, int lineNumber)
{
    const QString& name = words.first();
    const auto known = knownDirectives().constFind(name);
    const int parameters = words.size() - 1;
    if (known == knownDirectives().constEnd() || parameters < known->first ||
        parameters > known->second) {
        return fail(QStringLiteral("Options error: Unrecognized option or missing or extra "
                                   "parameter(s) in %1:%2: %3 (2.6.14)")
                        .arg(m_path)
                        .arg(lineNumber)
                        .arg(name));
    }
    if (name == QLatin1String("client")) {
        m_client = true;
    } else if (name == QLatin1String("dev")) {
        m_tun = words.at(1) == QLatin1String("tun");
    } else if (name == QLatin1String("proto")) {
        const QString& word = words.at(1);
        if (word == QLatin1String("udp")) {
            m_protocol = word;
        } else if (word == QLatin1String("tcp") || word == QLatin1String("tcp-client")) {
            m_protocol = QStringLiteral("tcp");
        } else {
            return fail(QStringLiteral("Options error: Bad protocol: '%1'").arg(word));
        }
    } else if (name == QLatin1String("remote")) {
        bool portOk = parameters < 2;
        m_remotePort = parameters < 2 ? 1194 : words.at(2).toInt(&portOk);
        if (!portOk || m_remotePort <= 0 || m_remotePort > 65535 ||
            !OvpnInputCheck::isPlainHost(words.at(1))) {
            return fail(QStringLiteral("RESOLVE: Cannot resolve host address: %1:%2 (Name or "
                                       "service not known)")
                            .arg(words.at(1), parameters < 2 ? QString() : words.at(2)));
        }
        m_remoteHost = words.at(1);
    } else if (name == QLatin1String("comp-lzo") || name == QLatin1String("compress")) {
        m_compression = true;
    } else if (name == QLatin1String("verb")) {
        bool ok = false;
        words.at(1).toInt(&ok);
        if (!ok) {
            return fail(QStringLiteral("Options error: --verb needs a number"));
        }
    }
    return true;
}

} // namespace tavero
