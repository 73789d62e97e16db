#include "support/clientstand.h"

#include "platform/platformoverrides.h"
#include "support/devservice.h"
#include "support/testplatform.h"

#include <QCoreApplication>
#include <QFile>

namespace tavero::test {

ClientStand::ClientStand(const DevService& service, const QString& standIn)
{
    if (!service.isRunning()) {
        m_error = service.errorText();
        return;
    }
    if (!QFile::link(standIn, m_programDir.filePath(QStringLiteral("openvpn")))) {
        m_error = QStringLiteral("cannot link the OpenVPN stand-in %1").arg(standIn);
        return;
    }
    service.exportEnvironment();
    qputenv("TAVERO_FAKE_OPENVPN_SCENARIO", "success");
    qputenv("TAVERO_FAKE_OPENVPN_TUNNEL",
            QStringLiteral("%1:%2").arg(service.tunnelHost()).arg(service.tunnelPort()).toUtf8());
    PlatformOverrides::setAdministrator(true);
    PlatformOverrides::setRdpListening(false);
}

ProgramAssembly::Options ClientStand::options(const QString& markerDirectory)
{
    ProgramAssembly::Options options;
    options.platform = std::make_unique<TestPlatform>();
    options.chainOptions.openVpnDirectory = m_programDir.path();
    options.launchName = QStringLiteral("tavero-stand-%1-%2")
                             .arg(QCoreApplication::applicationPid())
                             .arg(++m_launches);
    options.markerDirectory = markerDirectory;
    return options;
}

} // namespace tavero::test
