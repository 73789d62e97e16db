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
    void sortsRowsAndServersByName();
};

// Workers overlap while they append their rows: every row still arrives once, with its flag, in
// name order, built off this thread.
void TestServerRowBuilder::workersBuildTheirShare()
{
    // Ids count down, so map order (ascending id) is the reverse of name order.
    ServerListMaker maker;
    const int countries = 45;
    for (int i = 0; i < countries; ++i) {
        maker.country(1000 - i, QStringLiteral("c%1").arg(i),
                      QStringLiteral("Country %1").arg(i, 3, 10, QLatin1Char('0')));
        maker.server(1000 - i, QStringLiteral("s%1").arg(i), 10);
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
        if (i > 0)
            QVERIFY(rows[i - 1].country.name < rows[i].country.name);
    }
    QVERIFY(builder.build(ServerListMaker().list()).isEmpty());
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
