// tavero-fake-openvpn: stands in for the OpenVPN client program in tests and demonstrations.
// Usage: tavero-fake-openvpn --config FILE [--script-security 2 --up COMMAND]
// (behaviour chosen by environment, see README.md)

#include "fakeopenvpn.h"
#include "openvpnconfigfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
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

// Splits an "up" command into words as OpenVPN does: blanks separate them, '...' and "..." quote,
// and outside single quotes a backslash takes the next character literally.
QStringList splitCommand(const QString& command)
{
    QStringList words;
    QString word;
    bool inWord = false;
    QChar quote;
    for (int i = 0; i < command.size(); ++i) {
        const QChar c = command.at(i);
        if (quote != QLatin1Char('\'') && c == QLatin1Char('\\') && i + 1 < command.size()) {
            word += command.at(++i);
            inWord = true;
        } else if (!quote.isNull() && c == quote) {
            quote = QChar();
        } else if (quote.isNull() && (c == QLatin1Char('\'') || c == QLatin1Char('"'))) {
            quote = c;
            inWord = true;
        } else if (quote.isNull() && c.isSpace()) {
            if (inWord)
                words << word;
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inWord)
        words << word;
    return words;
}

// Runs the "up" command with the arguments OpenVPN appends (device, MTUs, addresses, "init").
bool runUp(const QString& command)
{
    QStringList words = splitCommand(command);
    if (words.isEmpty())
        return false;
    const QString program = words.takeFirst();
    QProcess up;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("dev"), QStringLiteral("tun-standin"));
    up.setProcessEnvironment(environment);
    up.start(program, words + QStringList{"tun-standin", "1500", "1500", "10.8.0.2",
                                          "255.255.255.0", "init"});
    return up.waitForFinished(10000) && up.exitStatus() == QProcess::NormalExit &&
           up.exitCode() == 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QStringList arguments = app.arguments().mid(1);
    // The driver adds these when the platform applies the tunnel's settings itself.
    QString upCommand;
    if (arguments.size() == 6 && arguments.at(2) == QLatin1String("--script-security") &&
        arguments.at(3) == QLatin1String("2") && arguments.at(4) == QLatin1String("--up")) {
        upCommand = arguments.at(5);
        arguments = arguments.mid(0, 2);
    }
    if (arguments.size() != 2 || arguments.first() != QLatin1String("--config")) {
        std::fprintf(stdout, "Options error: the stand-in takes exactly --config FILE "
                             "[--script-security 2 --up COMMAND]\n");
        return 1;
    }
    recordStart(arguments.at(1));

    tavero::OpenVpnConfigFile config;
    if (!config.load(arguments.at(1))) {
        std::fprintf(stdout, "%s", qPrintable(config.errors()));
        std::fprintf(stdout, "Use --help for more information.\n");
        return 1;
    }
    if (!upCommand.isEmpty() && !runUp(upCommand)) {
        std::fprintf(stdout, "ERROR: the --up command failed\n");
        return 1;
    }
    tavero::FakeOpenVpn fake(config, qEnvironmentVariable("TAVERO_FAKE_OPENVPN_SCENARIO"),
                             qEnvironmentVariable("TAVERO_FAKE_OPENVPN_TUNNEL"));
    if (!fake.start()) {
        return 2;
    }
    return app.exec();
}
