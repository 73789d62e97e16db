#include "platform/linux/tunnelnetworkguard.h"

#include "connection/runtimedirectory.h"
#include "platform/linux/ipv6guard.h"
#include "platform/linux/privatestatefile.h"

#include <QDebug>
#include <QFile>
#include <QJsonDocument>
#include <net/if.h>

namespace tavero {
namespace {

const QString ipv6Key = QStringLiteral("ipv6");
const QString resolverKey = QStringLiteral("resolver");
const QString ownerKey = QStringLiteral("owner");

// Undoes what `state` names; true when nothing is left applied.
bool undo(const QJsonObject& state)
{
    bool done = TunnelResolver::restore(state.value(resolverKey).toObject());
    if (state.value(ipv6Key).toBool()) {
        QString detail;
        if (!Ipv6Guard::remove(detail)) {
            qCritical().noquote() << "Cannot remove the IPv6 block:" << detail;
            done = false;
        }
    }
    return done;
}

} // namespace

TunnelNetworkGuard::TunnelNetworkGuard(QString stateFile, TunnelResolver::Options resolver)
    : m_stateFile(std::move(stateFile))
    , m_resolver(std::move(resolver))
{}

TunnelNetworkGuard::~TunnelNetworkGuard()
{
    release();
}

QString TunnelNetworkGuard::stateFileDefault()
{
    return PrivateStateFile::defaultPath(QStringLiteral("tunnelnetwork.json"));
}

bool TunnelNetworkGuard::save()
{
    return m_stateFile.isEmpty() || PrivateStateFile::write(m_stateFile, m_state);
}

OperationResult TunnelNetworkGuard::apply(const TunnelNetwork& network)
{
    release();
    if (!m_state.isEmpty())
        return OperationResult(QStringLiteral("the previous tunnel's settings are still applied"));
    m_state.insert(ownerKey, RuntimeDirectory::ownerTag());
    if (!network.carriesIpv6) {
        m_state.insert(ipv6Key, true);
        QString detail;
        if (!save() || !Ipv6Guard::apply(network.serverAddress, detail)) {
            release();
            return OperationResult(QStringLiteral("cannot block IPv6 outside the tunnel: ") +
                                   detail);
        }
        qInfo("IPv6 outside the tunnel is blocked");
    }
    const int index = int(::if_nametoindex(network.device.toLatin1().constData()));
    const OperationResult resolver =
        m_resolver.apply(network, index, [this](const QJsonObject& record) {
            m_state.insert(resolverKey, record);
            return save();
        });
    if (!resolver.isSuccess) {
        release();
        return resolver;
    }
    return {};
}

void TunnelNetworkGuard::release()
{
    if (m_state.isEmpty())
        return;
    bool done = m_resolver.release();
    if (done)
        m_state.remove(resolverKey);
    if (m_state.value(ipv6Key).toBool()) {
        QString detail;
        if (Ipv6Guard::remove(detail))
            m_state.remove(ipv6Key);
        else
            qCritical().noquote() << "Cannot remove the IPv6 block:" << detail;
    }
    done = done && !m_state.contains(ipv6Key);
    // What could not be undone stays on disk for the next start.
    if (done)
        m_state = {};
    save();
}

void TunnelNetworkGuard::restoreLeftover(const QString& stateFile)
{
    QFile file(stateFile);
    if (stateFile.isEmpty() || !file.open(QIODevice::ReadOnly))
        return;
    const QJsonObject state = QJsonDocument::fromJson(file.readAll()).object();
    file.close();
    if (RuntimeDirectory::ownerRuns(state.value(ownerKey).toString()))
        return;
    qWarning("Undoing the DNS and IPv6 settings of a client that ended while connected");
    if (undo(state))
        QFile::remove(stateFile);
}

} // namespace tavero
