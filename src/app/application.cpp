#include "app/application.h"

#include "buildinfo.h"

#include <QIcon>

Application::Application(int& argc, char** argv)
    : QApplication(argc, argv)
{
    setProperty("AppBuildDate", QString::fromLatin1(tavero::buildinfo::buildDate));
    setProperty("APPLICATION_VERSION_INT", QByteArray(tavero::buildinfo::versionInt).toInt());
    QCoreApplication::setApplicationName(QStringLiteral("Tavero"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(tavero::buildinfo::version));
    QApplication::setWindowIcon(QIcon(QStringLiteral("://pictures/tavero.ico")));
}

Application::~Application() = default;
