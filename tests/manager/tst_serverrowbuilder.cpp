#include "manager/serverrowbuilder.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"

#include <QMutex>
#include <QSet>
#include <QThread>

using tavero::ServerRowBuilder;
using tavero::test::ServerListMaker;

namespace {

// A 1-pixel-high picture one wider than the code is long, so each row's flag is recognisable.
QImage flagFor(const QString& code)
{
    QImage image(code.size() + 1, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

} // namespace

class TestServerRowBuilder : public QObject {
    Q_OBJECT
private slots:
    void workersBuildTheirShare();
};

// Workers overlap while they append their rows: every row still arrives once, with its flag, in
// name order with its servers in name order (whole records), built off this thread.
void TestServerRowBuilder::workersBuildTheirShare()
{
    // Ids count down, so map order (ascending id) is the reverse of name order.
    ServerListMaker maker;
    const int countries = 45;
    for (int i = 0; i < countries; ++i) {
        maker.country(1000 - i, QStringLiteral("c%1").arg(i),
                      QStringLiteral("Country %1").arg(i, 3, 10, QLatin1Char('0')));
        maker.server(1000 - i, QStringLiteral("s%1-b").arg(i), 10)
            .server(1000 - i, QStringLiteral("s%1-a").arg(i), 20);
    }
    QMutex mutex;
    QSet<int> workers;
    QSet<Qt::HANDLE> threads;
    ServerRowBuilder builder([](const QString& code) {
        QThread::usleep(200); // slow flag loads
        return flagFor(code);
    });
    builder.setRowObserver([&](int worker, int) {
        const QMutexLocker locker(&mutex);
        workers.insert(worker);
        threads.insert(QThread::currentThreadId());
    });
    const QVector<CountryPresentationData> rows = builder.build(maker.list());
    QVERIFY(workers.size() > 1);
    QVERIFY(!threads.contains(QThread::currentThreadId()));
    QCOMPARE(rows.size(), countries);
    for (int i = 0; i < rows.size(); ++i) {
        QCOMPARE(rows[i].flagImage.width(), rows[i].country.code.size() + 1);
        QCOMPARE(rows[i].servers.size(), 2);
        QCOMPARE(rows[i].servers[0].name, rows[i].country.code.mid(1).prepend('s') + "-a");
        QCOMPARE(rows[i].servers[0].load, 20);
        if (i > 0)
            QVERIFY(rows[i - 1].country.name < rows[i].country.name);
    }
    QVERIFY(builder.build(ServerListMaker().list()).isEmpty());
}

TAVERO_TEST_GUILESS_MAIN(TestServerRowBuilder)
#include "tst_serverrowbuilder.moc"
