#include "support/testmain.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

// Runs the screenshot tool the way a developer does, offscreen: every registered page and state
// renders (painting, styling and the pages over the scripted service with it).
class TestScreenshots : public QObject {
    Q_OBJECT

    // Runs the tool offscreen; false when it did not end with success in time (generous: it
    // renders dozens of pages, and the machine may be busy).
    static bool run(const QStringList& arguments, QProcess& process)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        process.setProcessEnvironment(env);
        process.start(qEnvironmentVariable("TAVERO_SCREENSHOTS"), arguments);
        return process.waitForFinished(240000) && process.exitCode() == 0;
    }

private slots:
    void rendersEveryListedPageAndState()
    {
        QProcess lister;
        QVERIFY(run({"--list"}, lister));
        const QByteArray listing = lister.readAllStandardOutput();
        QStringList expected;
        for (const QString& line : QString::fromUtf8(listing).split('\n', Qt::SkipEmptyParts)) {
            const QString page = line.section(": ", 0, 0);
            for (const QString& state : line.section(": ", 1).split(", "))
                for (const char* language : {"eng", "rus"})
                    expected << QStringLiteral("%1-%2-%3.png").arg(page, state, language);
        }
        QVERIFY2(expected.size() >= 40, listing.constData());

        QTemporaryDir out;
        QProcess shooter;
        QVERIFY2(run({"--out", out.path(), "--languages", "eng,rus"}, shooter),
                 shooter.readAllStandardError().constData());
        expected.sort();
        QCOMPARE(QDir(out.path()).entryList({"*.png"}, QDir::Files, QDir::Name), expected);

        const auto picture = [&](const char* name) { return QImage(out.path() + "/" + name); };
        // The connected page really shows a tunnel: the green shield instead of the red one.
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
        const QImage connected = picture("status-connected-rus.png");
        const QImage disconnected = picture("status-disconnected-rus.png");
        QVERIFY(shieldPixels(connected, true) > 300);
        QCOMPARE(shieldPixels(connected, false), 0);
        QVERIFY(shieldPixels(disconnected, false) > 300);
        QCOMPARE(shieldPixels(disconnected, true), 0);
        // The plate really lies over the page; the dialog without a change log is smaller.
        QVERIFY(picture("status-disconnected-eng.png") != picture("status-waiting-eng.png"));
        // An IPv6 address is drawn smaller than an IPv4 one to fit (the lowest dark band).
        const auto addressHeight = [](const QImage& page) {
            int bottom = -1;
            for (int y = 340; y > 100; --y) {
                int dark = 0;
                for (int x = 0; x < page.width(); ++x)
                    dark += page.pixelColor(x, y).lightness() < 100;
                if (dark >= 2 && bottom < 0)
                    bottom = y;
                else if (dark < 2 && bottom >= 0)
                    return bottom - y;
            }
            return 0;
        };
        const int ipv4Height = addressHeight(connected);
        QVERIFY(ipv4Height > 10);
        QVERIFY(addressHeight(picture("status-long-connected-rus.png")) < ipv4Height - 3);
        QVERIFY(picture("newversion-compact-eng.png").height() <
                picture("newversion-changelog-eng.png").height());
    }
};

TAVERO_TEST_GUILESS_MAIN(TestScreenshots)
#include "tst_screenshots.moc"
