#include "platform/nativeplatform.h"
#include "platform/platformoverrides.h"
#include "support/testmain.h"

#include <unistd.h>

using tavero::NativePlatform;
using tavero::PlatformOverrides;

class TestProcessRights : public QObject {
    Q_OBJECT
private slots:
    void cleanup() { PlatformOverrides::setAdministrator(std::nullopt); }

    void rootIsAdministrator()
    {
        if (::geteuid() != 0)
            QSKIP("runs only as root");
        QVERIFY(NativePlatform::isRunningAsAdministrator());
    }

    void overrideWinsBothWays()
    {
        PlatformOverrides::setAdministrator(false);
        QVERIFY(!NativePlatform::isRunningAsAdministrator());
        PlatformOverrides::setAdministrator(true);
        QVERIFY(NativePlatform::isRunningAsAdministrator());
    }

    void elevationRespectsItsSwitches()
    {
        qputenv("TAVERO_NO_ELEVATE", "1");
        QVERIFY(!NativePlatform::elevateToAdmin());
        qunsetenv("TAVERO_NO_ELEVATE");
        // Without a display there is nobody to ask for a password.
        qunsetenv("DISPLAY");
        qunsetenv("WAYLAND_DISPLAY");
        QVERIFY(!NativePlatform::elevateToAdmin());
        // A copy that is itself the result of an elevation never elevates again.
        qputenv("DISPLAY", ":987");
        qputenv("TAVERO_ELEVATED", "1");
        QVERIFY(!NativePlatform::elevateToAdmin());
        qunsetenv("TAVERO_ELEVATED");
        qunsetenv("DISPLAY");
    }
};

TAVERO_TEST_GUILESS_MAIN(TestProcessRights)
#include "tst_processrights.moc"
