#include "manager/serverlistqueries.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"

using tavero::ServerListQueries;
using tavero::test::ServerListMaker;

namespace {

VpnServerInformation server(const QString& name, int load, bool available)
{
    VpnServerInformation info;
    info.name = name;
    info.load = load;
    info.isAvailable = available;
    return info;
}

} // namespace

Q_DECLARE_METATYPE(QVector<VpnServerInformation>)

class TestServerListQueries : public QObject {
    Q_OBJECT
private slots:
    void bestServerIndex_data();
    void bestServerIndex();
    void loadingText_data();
    void loadingText();
    void bestServerNameByCountryCode_data();
    void bestServerNameByCountryCode();
};

void TestServerListQueries::bestServerIndex_data()
{
    QTest::addColumn<QVector<VpnServerInformation>>("servers");
    QTest::addColumn<int>("best");

    QTest::newRow("empty") << QVector<VpnServerInformation>{} << -1;
    QTest::newRow("none available")
        << QVector<VpnServerInformation>{server("a", 1, false), server("b", 2, false)} << -1;
    QTest::newRow("lowest load") << QVector<VpnServerInformation>{server("a", 30, true),
                                                                  server("b", 10, true),
                                                                  server("c", 20, true)}
                                 << 1;
    QTest::newRow("equal loads: the earliest")
        << QVector<VpnServerInformation>{server("a", 30, true), server("b", 10, true),
                                         server("c", 10, true)}
        << 1;
    QTest::newRow("unavailable lower load is skipped")
        << QVector<VpnServerInformation>{server("a", 0, false), server("b", 50, true),
                                         server("c", 40, true)}
        << 2;
    QTest::newRow("position in the vector passed in")
        << QVector<VpnServerInformation>{server("a", 1, false), server("b", 1, false),
                                         server("c", 5, true)}
        << 2;
    QTest::newRow("load 0 wins") << QVector<VpnServerInformation>{server("a", 3, true),
                                                                  server("b", 0, true)}
                                 << 1;
}

void TestServerListQueries::bestServerIndex()
{
    QFETCH(QVector<VpnServerInformation>, servers);
    QFETCH(int, best);
    QCOMPARE(ServerListQueries::bestServerIndex(servers), best);
}

void TestServerListQueries::loadingText_data()
{
    QTest::addColumn<int>("load");
    QTest::addColumn<bool>("available");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0 << true << QStringLiteral("0%");
    QTest::newRow("37") << 37 << true << QStringLiteral("37%");
    QTest::newRow("100") << 100 << true << QStringLiteral("100%");
    QTest::newRow("unavailable") << 37 << false << QString();
}

void TestServerListQueries::loadingText()
{
    QFETCH(int, load);
    QFETCH(bool, available);
    QFETCH(QString, text);
    const QString actual = ServerListQueries::loadingText(server("x", load, available));
    QCOMPARE(actual, text);
    QCOMPARE(actual.isNull(), text.isNull());
}

void TestServerListQueries::bestServerNameByCountryCode_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("name");

    QTest::newRow("best of the country") << QStringLiteral("de") << QStringLiteral("de-2");
    QTest::newRow("unknown code") << QStringLiteral("xx") << QString();
    QTest::newRow("code differs in case") << QStringLiteral("DE") << QString();
    QTest::newRow("country without servers") << QStringLiteral("fr") << QString();
    QTest::newRow("no available server") << QStringLiteral("nl") << QString();
}

void TestServerListQueries::bestServerNameByCountryCode()
{
    QFETCH(QString, code);
    QFETCH(QString, name);
    ServerListMaker maker;
    maker.country(1, QStringLiteral("de"), QStringLiteral("Germany"))
        .country(2, QStringLiteral("fr"), QStringLiteral("France"))
        .country(3, QStringLiteral("nl"), QStringLiteral("Netherlands"))
        .server(1, QStringLiteral("de-1"), 40)
        .server(1, QStringLiteral("de-2"), 10)
        .server(1, QStringLiteral("de-3"), 5, false)
        .server(3, QStringLiteral("nl-1"), 1, false);
    QCOMPARE(ServerListQueries::bestServerNameByCountryCode(maker.list(), code), name);
}

TAVERO_TEST_GUILESS_MAIN(TestServerListQueries)
#include "tst_serverlistqueries.moc"
