// tavero-session-shots: pictures of a whole session of the client (login, status, server page,
// connected status, server change, settings, language change, exit confirmation), for reviewing
// the assembled programme rather than single pages.

#include "app/application.h"
#include "sessiondriver.h"
#include "support/testenvironment.h"

#include <QCommandLineParser>
#include <QProcess>
#include <QTextStream>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never the user's own settings or network: an isolated home and the inert network switch.
    const tavero::test::TestEnvironment isolatedHome;
    qputenv("TAVERO_KEEP_NETWORK", "1");
    if (qEnvironmentVariableIsEmpty("TAVERO_DEVSERVICE"))
        qputenv("TAVERO_DEVSERVICE", TAVERO_DEVSERVICE_PATH);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    Application app(argc, argv);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Writes <out>/<nn>-<step>-<language>.png for one session per language."));
    parser.addHelpOption();
    const QCommandLineOption outOption({QStringLiteral("o"), QStringLiteral("out")},
                                       QStringLiteral("Output directory (default: out/session)."),
                                       QStringLiteral("dir"), QStringLiteral("out/session"));
    const QCommandLineOption languagesOption(
        {QStringLiteral("l"), QStringLiteral("languages")},
        QStringLiteral("Session languages, each switching to the next at the language step "
                       "(default: eng,ger)."),
        QStringLiteral("codes"), QStringLiteral("eng,ger"));
    const QCommandLineOption changeToOption(
        QStringLiteral("change-to"),
        QStringLiteral("Run one session in the single language given, switching to this one."),
        QStringLiteral("code"));
    parser.addOptions({outOption, languagesOption, changeToOption});
    parser.process(app);

    QTextStream out(stdout);
    const QStringList codes = parser.value(languagesOption).split(QLatin1Char(','));
    if (parser.isSet(changeToOption)) {
        tavero::sessionshots::SessionDriver session(parser.value(outOption), codes.value(0),
                                                    parser.value(changeToOption));
        const bool ok = session.run();
        for (const QString& file : session.written())
            out << file << '\n';
        if (!ok)
            out << "session " << codes.value(0) << " failed: " << session.errorText() << '\n';
        return ok ? 0 : 1;
    }
    // One process per session: the exit at the end of a session quits the application, after
    // which no event loop of that process runs again.
    int failures = 0;
    for (int i = 0; i < codes.size(); ++i) {
        const QStringList arguments = {
            QStringLiteral("--out"),       parser.value(outOption),
            QStringLiteral("--languages"), codes.at(i),
            QStringLiteral("--change-to"), codes.at((i + 1) % codes.size())};
        QProcess session;
        session.setProcessChannelMode(QProcess::ForwardedOutputChannel);
        session.start(QCoreApplication::applicationFilePath(), arguments);
        if (!session.waitForFinished(-1) || session.exitStatus() != QProcess::NormalExit ||
            session.exitCode() != 0)
            ++failures;
    }
    return failures == 0 ? 0 : 1;
}
