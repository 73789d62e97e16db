#include "app/application.h"
#include "app/messagehandler.h"
#include "app/programassembly.h"
#include "app/startenvironment.h"
#include "platform/nativeplatform.h"

#include <QFile>
#include <QStringList>

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    qInstallMessageHandler(tavero::messageHandler);
    {
        QStringList arguments;
        for (int i = 0; i < argc; ++i)
            arguments << QFile::decodeName(argv[i]);
        tavero::StartEnvironment::prepare(arguments);
    }

    tavero::NativePlatform::confirmElevatedStart();
    const bool isAdministrator = tavero::NativePlatform::isRunningAsAdministrator();
    if (!isAdministrator) {
        if (tavero::NativePlatform::elevateToAdmin())
            return 0; // the elevated copy takes over
    }

    Application app(argc, argv);
    tavero::ProgramAssembly assembly;
    if (!assembly.assemble(isAdministrator))
        return 0;

    return app.exec();
}
