#include "support/testmain.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

// Runs the screenshot tool the way a developer does, offscreen.
class TestScreenshots : public QObject {
    Q_OBJECT

    QString tool() const { return qEnvironmentVariable("TAVERO_SCREENSHOTS"); }

    QProcess* start(const QStringList& arguments)
    {
        auto* process = new QProcess(this);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        process->setProcessEnvironment(env);
        process->start(tool(), arguments);
        return process;
    }

private slots:
    void listsTheRegisteredPages()
    {
        QProcess* process = start({"--list"});
        QVERIFY(process->waitForFinished(30000));
        QCOMPARE(process->exitCode(), 0);
        const QString listing = QString::fromUtf8(process->readAllStandardOutput());
        for (const char* line :
             {"about: default", "splash: default", "waitingplate: plain, waiting",
              "status: disconnected, connected", "serverselection: disconnected, connected",
              "login: empty, filled, no-email, no-password", "settings: common, about",
              "newversion: changelog, compact"})
            QVERIFY2(listing.contains(line), qPrintable(listing));
    }

    void writesOnePicturePerPageStateAndLanguage()
    {
        QTemporaryDir out;
        QVERIFY(out.isValid());
        QProcess* process = start({"--out", out.path() + "/shots", "--pages",
                                   "about,waitingplate,splash", "--languages", "eng,rus"});
        QVERIFY(process->waitForFinished(60000));
        QVERIFY2(process->exitCode() == 0, process->readAllStandardError().constData());

        const struct {
            const char* file;
            QSize size;
        } expected[] = {
            {"about-default-eng.png", QSize(715, 559)},
            {"about-default-rus.png", QSize(715, 559)},
            {"splash-default-eng.png", QSize(360, 550)},
            {"splash-default-rus.png", QSize(360, 550)},
            {"waitingplate-plain-eng.png", QSize(360, 550)},
            {"waitingplate-waiting-rus.png", QSize(360, 550)},
        };
        for (const auto& picture : expected) {
            const QImage image(out.path() + "/shots/" + picture.file);
            QVERIFY2(!image.isNull(), picture.file);
            QCOMPARE(image.size(), picture.size);
        }
        QCOMPARE(QDir(out.path() + "/shots").entryList({"*.png"}).size(), 8);

        // The plate really lies over the page in the waiting state.
        const QImage plain(out.path() + "/shots/waitingplate-plain-eng.png");
        const QImage waiting(out.path() + "/shots/waitingplate-waiting-eng.png");
        QVERIFY(plain != waiting);
    }

    void rendersTheClientPagesOverTheScriptedService()
    {
        QTemporaryDir out;
        QVERIFY(out.isValid());
        QProcess* process = start(
            {"--out", out.path(), "--pages", "login,status,serverselection", "--languages", "fra"});
        QVERIFY(process->waitForFinished(60000));
        QVERIFY2(process->exitCode() == 0, process->readAllStandardError().constData());
        QCOMPARE(QDir(out.path()).entryList({"*.png"}).size(), 4 + 7 + 2);

        const auto picture = [&](const char* name) { return QImage(out.path() + "/" + name); };
        // Pages at least at the window's smallest size; boxes at their own, much smaller one.
        for (const char* page : {"login-empty-fra.png", "status-disconnected-fra.png",
                                 "status-connected-fra.png", "serverselection-connected-fra.png"}) {
            const QImage image = picture(page);
            QVERIFY2(image.width() >= 360 && image.height() >= 550, page);
        }
        for (const char* box : {"login-no-email-fra.png", "status-rdp-question-fra.png",
                                "status-protocol-question-fra.png"}) {
            const QImage image = picture(box);
            QVERIFY2(!image.isNull() && image.height() < 300, box);
        }
        // The connected picture really shows a tunnel: the green shield instead of the red one.
        const auto shieldPixels = [](const QImage& image, bool green) {
            int count = 0;
            for (int y = 10; y < 80; ++y) {
                for (int x = 10; x < 76; ++x) {
                    const QColor c = image.pixelColor(x, y);
                    if (green ? c.green() > c.red() + 30 : c.red() > c.green() + 60)
                        ++count;
                }
            }
            return count;
        };
        const QImage connected = picture("status-connected-fra.png");
        const QImage disconnected = picture("status-disconnected-fra.png");
        QVERIFY(shieldPixels(connected, true) > 300);
        QCOMPARE(shieldPixels(connected, false), 0);
        QVERIFY(shieldPixels(disconnected, false) > 300);
        QCOMPARE(shieldPixels(disconnected, true), 0);
    }

    // The dialogs in every language: the settings dialog at its fixed size on both tabs, the update
    // dialog at its form's size and, without a change log, in its compact size.
    void rendersTheDialogsInEveryLanguage()
    {
        QTemporaryDir out;
        QVERIFY(out.isValid());
        QProcess* process = start({"--out", out.path(), "--pages", "settings,newversion"});
        QVERIFY(process->waitForFinished(120000));
        QVERIFY2(process->exitCode() == 0, process->readAllStandardError().constData());
        for (const char* language : {"eng", "fra", "ger", "rus", "spa"}) {
            const QString suffix = QStringLiteral("-%1.png").arg(QLatin1String(language));
            const QImage common(out.path() + "/settings-common" + suffix);
            const QImage about(out.path() + "/settings-about" + suffix);
            const QImage full(out.path() + "/newversion-changelog" + suffix);
            const QImage compact(out.path() + "/newversion-compact" + suffix);
            QCOMPARE(common.size(), QSize(545, 582));
            QCOMPARE(about.size(), QSize(545, 582));
            QVERIFY(common != about);
            QCOMPARE(full.size(), QSize(468, 573));
            QCOMPARE(compact.width(), 545);
            QVERIFY2(compact.height() < full.height(), language);
        }
    }

    void refusesUnknownPagesAndLanguages_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("page") << QStringList{"--pages", "about,nosuchpage"};
        QTest::newRow("language") << QStringList{"--languages", "eng,xx"};
    }

    void refusesUnknownPagesAndLanguages()
    {
        QFETCH(QStringList, arguments);
        QTemporaryDir out;
        QProcess* process = start(QStringList{"--out", out.path()} + arguments);
        QVERIFY(process->waitForFinished(30000));
        QCOMPARE(process->exitCode(), 2);
        QVERIFY(QDir(out.path()).entryList({"*.png"}).isEmpty());
    }
};

TAVERO_TEST_GUILESS_MAIN(TestScreenshots)
#include "tst_screenshots.moc"
