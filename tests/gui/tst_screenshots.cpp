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
        QVERIFY2(listing.contains("about: default"), qPrintable(listing));
        QVERIFY2(listing.contains("splash: default"), qPrintable(listing));
        QVERIFY2(listing.contains("waitingplate: plain, waiting"), qPrintable(listing));
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
