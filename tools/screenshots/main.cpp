// tavero-screenshots: renders the registered pages and dialogs to PNG files, one per page, state
// and language, for reviewing layouts and translations without running the client.

#include "app/application.h"
#include "gui/shell/viewmanager.h"
#include "shotregistry.h"
#include "shotrunner.h"

#include <QCommandLineParser>
#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTextStream>

using tavero::screenshots::ShotRegistry;
using tavero::screenshots::ShotRunner;

namespace {

QStringList splitList(const QString& value)
{
    return value.split(QLatin1Char(','), Qt::SkipEmptyParts);
}

} // namespace

int main(int argc, char** argv)
{
    // Without a display, render offscreen rather than fail.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Pages read and write the settings store (the language choice among them): give them one of
    // their own, never the user's.
    const QTemporaryDir settingsHome;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(settingsHome.path()));

    Application app(argc, argv);
    // The pages' debug lines (the client drops them too) would drown the list of pictures.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Renders pages and dialogs to <out>/<page>-<state>-<language>.png."));
    parser.addHelpOption();
    const QCommandLineOption outOption({QStringLiteral("o"), QStringLiteral("out")},
                                       QStringLiteral("Output directory (default: screenshots)."),
                                       QStringLiteral("dir"), QStringLiteral("screenshots"));
    const QCommandLineOption pagesOption(
        {QStringLiteral("p"), QStringLiteral("pages")},
        QStringLiteral("Comma-separated pages to render (default: all, see --list)."),
        QStringLiteral("names"));
    const QCommandLineOption languagesOption(
        {QStringLiteral("l"), QStringLiteral("languages")},
        QStringLiteral("Comma-separated languages out of eng,fra,ger,rus,spa (default: all)."),
        QStringLiteral("codes"));
    const QCommandLineOption listOption(QStringLiteral("list"),
                                        QStringLiteral("List the pages and their states."));
    parser.addOptions({outOption, pagesOption, languagesOption, listOption});
    parser.process(app);

    const ShotRegistry& registry = ShotRegistry::instance();
    if (parser.isSet(listOption)) {
        for (const ShotRegistry::Page& page : registry.pages())
            out << page.name << ": " << page.states.join(QStringLiteral(", ")) << '\n';
        return 0;
    }

    std::vector<const ShotRegistry::Page*> pages;
    if (parser.isSet(pagesOption)) {
        for (const QString& name : splitList(parser.value(pagesOption))) {
            const ShotRegistry::Page* page = registry.find(name);
            if (!page) {
                err << "unknown page: " << name << " (see --list)\n";
                return 2;
            }
            pages.push_back(page);
        }
    } else {
        for (const ShotRegistry::Page& page : registry.pages())
            pages.push_back(&page);
    }

    QStringList languages = ShotRunner::knownLanguages();
    if (parser.isSet(languagesOption)) {
        languages = splitList(parser.value(languagesOption));
        for (const QString& language : qAsConst(languages)) {
            if (!ShotRunner::knownLanguages().contains(language)) {
                err << "unknown language: " << language << '\n';
                return 2;
            }
        }
    }

    // The client's faces (only those it registers) and its application-wide sheet.
    ViewManager::installLook();
    ShotRunner runner(parser.value(outOption));
    const bool ok = runner.run(pages, languages);
    for (const QString& path : runner.written())
        out << path << '\n';
    for (const QString& error : runner.errors())
        err << "error: " << error << '\n';
    return ok ? 0 : 1;
}
