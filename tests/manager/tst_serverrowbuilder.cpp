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
    void workersBuildTheirShare_data();
    void workersBuildTheirShare();
    void sortsRowsAndServersByName();
};

void TestServerRowBuilder::workersBuildTheirShare_data()
{
    QTest::addColumn<int>("countries");
    QTest::addColumn<int>("perWorker");
    QTest::addColumn<int>("lastWorker");

    QTest::newRow("45 countries: 19 x 2, then 7") << 45 << 2 << 7;
    QTest::newRow("5 countries: all to the last") << 5 << 0 << 5;
    QTest::newRow("200 countries: 19 x 10, then 10") << 200 << 10 << 10;
    QTest::newRow("none") << 0 << 0 << 0;
}

void TestServerRowBuilder::workersBuildTheirShare()
{
    QFETCH(int, countries);
    QFETCH(int, perWorker);
    QFETCH(int, lastWorker);

    // Ids count down, so map order (ascending id) is the reverse of name order.
    ServerListMaker maker;
    for (int i = 0; i < countries; ++i) {
        maker.country(1000 - i, QStringLiteral("c%1").arg(i),
                      QStringLiteral("Country %1").arg(i, 3, 10, QLatin1Char('0')));
        maker.server(1000 - i, QStringLiteral("s%1").arg(i), 10);
    }
    const ServerListGettingResult list = maker.list();

    QMutex mutex;
    QMap<int, QVector<int>> countriesByWorker;
    QSet<Qt::HANDLE> threads;
    // Slow flag loads make the workers overlap while they append their rows.
    ServerRowBuilder builder([](const QString& code) {
        QThread::usleep(200);
        return flagFor(code);
    });
    QCOMPARE(builder.threadCount(), ServerRowBuilder::defaultThreadCount);
    builder.setRowObserver([&](int worker, int countryId) {
        const QMutexLocker locker(&mutex);
        countriesByWorker[worker].append(countryId);
        threads.insert(QThread::currentThreadId());
    });
    const QVector<CountryPresentationData> rows = builder.build(list);

    for (int worker = 0; worker < 19; ++worker)
        QCOMPARE(countriesByWorker.value(worker).size(), perWorker);
    QCOMPARE(countriesByWorker.value(19).size(), lastWorker);
    QVERIFY(!countriesByWorker.contains(20));
    // Each worker takes consecutive countries in map order, the last one the tail.
    const QList<int> ids = list.serversByCountry.keys();
    if (countries > 0)
        QCOMPARE(countriesByWorker.value(19).last(), ids.last());
    if (perWorker > 0)
        QCOMPARE(countriesByWorker.value(0).mid(0, 2), (QVector<int>{ids[0], ids[1]}));
    QVERIFY(!threads.contains(QThread::currentThreadId()));

    // Every row arrives once, with its flag, in name order.
    QCOMPARE(rows.size(), countries);
    QSet<int> built;
    for (int i = 0; i < rows.size(); ++i) {
        built.insert(rows[i].country.id);
        QCOMPARE(rows[i].flagImage.width(), rows[i].country.code.size() + 1);
        if (i > 0)
            QVERIFY(rows[i - 1].country.name < rows[i].country.name);
    }
    QCOMPARE(built.size(), countries);
}

void TestServerRowBuilder::sortsRowsAndServersByName()
{
    ServerListMaker maker;
    maker.country(1, QStringLiteral("zz"), QStringLiteral("Zambia"))
        .country(2, QStringLiteral("aa"), QStringLiteral("Albania"))
        .country(3, QStringLiteral("ll"), QStringLiteral("latvia")) // lower case sorts after upper
        .country(4, QStringLiteral("mm"), QStringLiteral("Malta"));
    for (int id = 1; id <= 4; ++id) {
        maker.server(id, QStringLiteral("b-2"), 5)
            .server(id, QStringLiteral("B-1"), 9)
            .server(id, QStringLiteral("a-3"), 1);
    }
    // A server whose country the list lacks gets a default row: no name, so it sorts first.
    maker.server(77, QStringLiteral("orphan"), 1);
    QVector<CountryPresentationData> rows = ServerRowBuilder(flagFor).build(maker.list());
    QCOMPARE(rows.size(), 5);
    QCOMPARE(rows[0].country.id, -1);
    QCOMPARE(rows.takeFirst().servers.first().name, QStringLiteral("orphan"));

    QStringList names;
    for (const CountryPresentationData& row : rows) {
        names << row.country.name;
        QStringList servers;
        for (const VpnServerInformation& server : row.servers)
            servers << server.name;
        // Plain code-unit order: upper case before lower case.
        QCOMPARE(servers, (QStringList{QStringLiteral("B-1"), QStringLiteral("a-3"),
                                       QStringLiteral("b-2")}));
        QCOMPARE(row.servers.first().load, 9); // whole records move, not just names
    }
    QCOMPARE(names, (QStringList{QStringLiteral("Albania"), QStringLiteral("Malta"),
                                 QStringLiteral("Zambia"), QStringLiteral("latvia")}));
}

TAVERO_TEST_GUILESS_MAIN(TestServerRowBuilder)
#include "tst_serverrowbuilder.moc"
