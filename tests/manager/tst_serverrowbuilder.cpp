#include "manager/serverrowbuilder.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"

#include <QMutex>
#include <QSet>
#include <QThread>

using tavero::ServerRowBuilder;
using tavero::test::ServerListMaker;

namespace {

// `count` countries with ids counting down from 1000, so map order (ascending id) is the reverse of
// name order; each has three servers.
ServerListGettingResult makeCountries(int count)
{
    ServerListMaker maker;
    for (int i = 0; i < count; ++i) {
        const int id = 1000 - i;
        maker.country(id, QStringLiteral("c%1").arg(i),
                      QStringLiteral("Country %1").arg(i, 3, 10, QLatin1Char('0')));
        maker.server(id, QStringLiteral("s%1-b").arg(i), 10)
            .server(id, QStringLiteral("s%1-a").arg(i), 20);
    }
    return maker.list();
}

// Records which worker built which country, from any thread.
struct WorkerLog {
    QMutex mutex;
    QMap<int, QVector<int>> countriesByWorker;
    QSet<Qt::HANDLE> threads;

    ServerRowBuilder::RowObserver observer()
    {
        return [this](int worker, int countryId) {
            const QMutexLocker locker(&mutex);
            countriesByWorker[worker].append(countryId);
            threads.insert(QThread::currentThreadId());
        };
    }
};

QImage flagFor(const QString& code)
{
    // A 1-pixel-high picture as wide as the code is long, so each row's flag is recognisable.
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
    void sortsRowsByNameAndServersByName();
    void attachesEachCountrysFlag();
    void missingCountryGivesDefaultRow();
    void keepsEveryRowUnderLoad();
};

void TestServerRowBuilder::workersBuildTheirShare_data()
{
    QTest::addColumn<int>("countries");
    QTest::addColumn<int>("perWorker");
    QTest::addColumn<int>("lastWorker");

    QTest::newRow("45 countries: 19 x 2, then 7") << 45 << 2 << 7;
    QTest::newRow("5 countries: all to the last") << 5 << 0 << 5;
    QTest::newRow("none") << 0 << 0 << 0;
}

void TestServerRowBuilder::workersBuildTheirShare()
{
    QFETCH(int, countries);
    QFETCH(int, perWorker);
    QFETCH(int, lastWorker);

    WorkerLog log;
    ServerRowBuilder builder(flagFor);
    QCOMPARE(builder.threadCount(), ServerRowBuilder::defaultThreadCount);
    builder.setRowObserver(log.observer());
    const ServerListGettingResult list = makeCountries(countries);
    const QVector<CountryPresentationData> rows = builder.build(list);

    QCOMPARE(rows.size(), countries);
    for (int worker = 0; worker < 19; ++worker)
        QCOMPARE(log.countriesByWorker.value(worker).size(), perWorker);
    QCOMPARE(log.countriesByWorker.value(19).size(), lastWorker);
    QVERIFY(!log.countriesByWorker.contains(20));

    // Each worker takes consecutive countries in map order, the last one the tail.
    const QList<int> ids = list.serversByCountry.keys();
    if (countries > 0)
        QCOMPARE(log.countriesByWorker.value(19).last(), ids.last());
    if (perWorker > 0)
        QCOMPARE(log.countriesByWorker.value(0), (QVector<int>{ids[0], ids[1]}));
    // Built off the calling thread.
    QVERIFY(!log.threads.contains(QThread::currentThreadId()));
    if (perWorker > 0)
        QVERIFY(log.threads.size() > 1);
}

void TestServerRowBuilder::sortsRowsByNameAndServersByName()
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
    const QVector<CountryPresentationData> rows = ServerRowBuilder(flagFor).build(maker.list());

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

void TestServerRowBuilder::attachesEachCountrysFlag()
{
    QMutex mutex;
    QStringList asked;
    ServerRowBuilder builder([&](const QString& code) {
        {
            const QMutexLocker locker(&mutex);
            asked << code;
        }
        return flagFor(code);
    });
    ServerListMaker maker;
    maker.country(1, QStringLiteral("de"), QStringLiteral("Germany"))
        .country(2, QStringLiteral("nld"), QStringLiteral("Netherlands"))
        .server(1, QStringLiteral("de-1"), 1)
        .server(2, QStringLiteral("nl-1"), 1);
    const QVector<CountryPresentationData> rows = builder.build(maker.list());

    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows[0].flagImage.width(), 3); // "de"
    QCOMPARE(rows[1].flagImage.width(), 4); // "nld"
    asked.sort();
    QCOMPARE(asked, (QStringList{QStringLiteral("de"), QStringLiteral("nld")}));
}

void TestServerRowBuilder::missingCountryGivesDefaultRow()
{
    ServerListMaker maker;
    maker.country(1, QStringLiteral("de"), QStringLiteral("Germany"))
        .server(1, QStringLiteral("de-1"), 1)
        .server(77, QStringLiteral("orphan-1"), 1);
    const QVector<CountryPresentationData> rows = ServerRowBuilder(flagFor).build(maker.list());

    QCOMPARE(rows.size(), 2);
    // The default country has an empty name and sorts first.
    QCOMPARE(rows[0].country.id, -1);
    QVERIFY(rows[0].country.code.isEmpty());
    QCOMPARE(rows[0].servers.size(), 1);
    QCOMPARE(rows[0].servers[0].name, QStringLiteral("orphan-1"));
    QCOMPARE(rows[1].country.name, QStringLiteral("Germany"));
}

void TestServerRowBuilder::keepsEveryRowUnderLoad()
{
    // Slow flag loads make the workers overlap while appending.
    ServerRowBuilder builder([](const QString& code) {
        QThread::usleep(200);
        return flagFor(code);
    });
    const ServerListGettingResult list = makeCountries(200);
    const QVector<CountryPresentationData> rows = builder.build(list);

    QCOMPARE(rows.size(), 200);
    QSet<int> ids;
    for (int i = 0; i < rows.size(); ++i) {
        ids.insert(rows[i].country.id);
        QVERIFY(!rows[i].flagImage.isNull());
        if (i > 0)
            QVERIFY(rows[i - 1].country.name < rows[i].country.name);
    }
    QCOMPARE(ids.size(), 200);
}

TAVERO_TEST_GUILESS_MAIN(TestServerRowBuilder)
#include "tst_serverrowbuilder.moc"
