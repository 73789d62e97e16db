// tavero-fake-openvpn: stands in for the OpenVPN client program in tests and demonstrations.
// Usage: tavero-fake-openvpn --config FILE   (behaviour chosen by environment, see README.md)

#include "fakeopenvpn.h"
#include "openvpnconfigfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

namespace {

// Appends one JSON line describing this start to the file named by TAVERO_FAKE_OPENVPN_LOG, so a
// test can see how often, where and on what the stand-in was started.
void recordStart(const QString& configPath)
{
    const QString logPath = qEnvironmentVariable("TAVERO_FAKE_OPENVPN_LOG");
    if (logPath.isEmpty()) {
        return;
    }
    QFile config(configPath);
    const QByteArray text = config.open(QIODevice::ReadOnly) ? config.readAll() : QByteArray();
    const QFile::Permissions permissions = QFileInfo(configPath).permissions();
    const int mode = ((permissions & QFile::ReadOwner) ? 0400 : 0) |
                     ((permissions & QFile::WriteOwner) ? 0200 : 0) |
                     ((permissions & QFile::ReadGroup) ? 040 : 0) |
                     ((permissions & QFile::WriteGroup) ? 020 : 0) |
                     ((permissions & QFile::ReadOther) ? 04 : 0) |
                     ((permissions & QFile::WriteOther) ? 02 : 0);
    const QJsonObject entry{
        {"pid", QCoreApplication::applicationPid()},
        {"cwd", QDir::currentPath()},
        {"config", configPath},
        {"mode", QString::number(mode, 8)},
        {"text", QString::fromLatin1(text)},
    };
    QFile log(logPath);
    if (log.open(QIODevice::Append)) {
        log.write(QJsonDocument(entry).toJson(QJsonDocument::Compact) + '\n');
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    if (arguments.size() != 2 || arguments.first() != QLatin1String("--config")) {
        std::fprintf(stdout, "Options error: the stand-in takes exactly --config FILE\n");
        return 1;
    }
    recordStart(arguments.at(1));

    tavero::OpenVpnConfigFile config;
    if (!config.load(arguments.at(1))) {
        std::fprintf(stdout, "%s", qPrintable(config.errors()));
        std::fprintf(stdout, "Use --help for more information.\n");
        return 1;
    }
    tavero::FakeOpenVpn fake(config, qEnvironmentVariable("TAVERO_FAKE_OPENVPN_SCENARIO"),
                             qEnvironmentVariable("TAVERO_FAKE_OPENVPN_TUNNEL"));
    if (!fake.start()) {
        return 2;
    }
    return app.exec();
}
