#include "app/settings.h"
#include "manager/vpnserverselector.h"
#include "support/fakeserverapi.h"
#include "support/testmain.h"

#include <QSignalSpy>
#include <memory>

using tavero::Settings;
using tavero::VpnServerSelector;
using tavero::test::FakeServerApi;

namespace {

struct Row {
    int countryId;
    QString name;
    int load;
    bool recommended;
    bool available = true;
};

ServerListGettingResult listOf(const QVector<Row>& rows)
{
    ServerListGettingResult list;
    list.status = RequestResult::Ok;
    for (const Row& row : rows) {
        VpnServerInformation server;
        server.countryId = row.countryId;
        server.name = row.name;
        server.host = row.name + ".vpn.example";
        server.load = row.load;
        server.isRecommended = row.recommended;
        server.isAvailable = row.available;
        list.serversByCountry[row.countryId].append(server);
        CountryInformation country;
        country.id = row.countryId;
        country.code = QString("c%1").arg(row.countryId);
        country.isAvailable = true;
        list.countriesById.insert(country.id, country);
        list.countriesByCode.insert(country.code, country);
    }
    return list;
}

} // namespace

Q_DECLARE_METATYPE(QVector<Row>)

class TestVpnServerSelector : public QObject {
    Q_OBJECT

    std::unique_ptr<FakeServerApi> m_apiHolder;
    FakeServerApi& api() { return *m_apiHolder; }

private slots:
    void init()
    {
        tavero::test::TestEnvironment::clearSettings();
        m_apiHolder = std::make_unique<FakeServerApi>();
    }

    void fetchResultsMapToMessages_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("success");
        QTest::addColumn<QString>("message");
        QTest::newRow("ok") << 0 << true << QString();
        QTest::newRow("no internet")
            << 2 << false << "warning.connection_problems_check_internet_connection";
        QTest::newRow("server error")
            << 1 << false << "warning.failed_get_information_about_vpn_servers";
        QTest::newRow("unreadable")
            << 4 << false << "warning.failed_get_information_about_vpn_servers";
    }
    void fetchResultsMapToMessages()
    {
        QFETCH(int, status);
        QFETCH(bool, success);
        QFETCH(QString, message);
        Settings settings;
        VpnServerSelector selector(api(), settings);
        api().serverList.status = status;
        api().recommendedServerList.status = status;
        for (const OperationResult& result :
             {selector.receiveServerListInfo(),
              selector.receiveRecommendedServerListInfo("1.2.3.4")}) {
            QCOMPARE(result.isSuccess, success);
            QCOMPARE(result.message, message);
        }
        QCOMPARE(api().lastRecommendedIp, QString("1.2.3.4"));
        // A failed fetch still replaces the list, so the next "if needed" fetches again.
        QCOMPARE(selector.servers().status, status);
        selector.receiveServerListInfoIfNeed();
        QCOMPARE(api().calls("receiveServerList"), success ? 1 : 2);
    }

    void autoLocationTakesLowestRecommendedAndAlwaysAnnounces()
    {
        Settings settings;
        settings.setAutoLocation(true);
        settings.setServerName("r2");
        api().serverList = listOf({{1, "any", 1, false}, {2, "r1", 40, true}, {3, "r2", 20, true}});
        VpnServerSelector selector(api(), settings);
        selector.receiveServerListInfo();
        QSignalSpy changed(&selector, &VpnServerSelector::serverWasChanged);
        selector.selectCurrServerUsingSettings();
        QCOMPARE(changed.count(), 1); // even though the saved choice was already r2
        QCOMPARE(settings.serverName(), QString("r2"));
    }

    void missingOrUnavailableSavedChoiceIsRepaired_data()
    {
        QTest::addColumn<QVector<Row>>("rows");
        QTest::addColumn<QString>("expected");
        QTest::newRow("lowest recommended")
            << QVector<Row>{{1, "x", 3, false}, {1, "r1", 30, true}, {2, "r2", 10, true}} << "r2";
        QTest::newRow("no recommended: lowest of all")
            << QVector<Row>{{1, "x", 50, false}, {2, "y", 7, false}, {3, "z", 9, false}} << "y";
        QTest::newRow("equal loads: lower country id wins")
            << QVector<Row>{{5, "late", 10, true}, {2, "early", 10, true}} << "early";
        QTest::newRow("equal loads: earlier in the country wins")
            << QVector<Row>{{2, "first", 10, true}, {2, "second", 10, true}} << "first";
        QTest::newRow("unavailable servers never chosen")
            << QVector<Row>{{1, "saved", 1, true, false}, {1, "r", 80, true}} << "r";
    }
    void missingOrUnavailableSavedChoiceIsRepaired()
    {
        QFETCH(QVector<Row>, rows);
        QFETCH(QString, expected);
        Settings settings;
        settings.setServerName("saved");
        api().serverList = listOf(rows);
        VpnServerSelector selector(api(), settings);
        selector.receiveServerListInfo();
        QSignalSpy changed(&selector, &VpnServerSelector::serverWasChanged);
        QCOMPARE(selector.currServer().name, expected);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(settings.serverName(), expected);
    }

    void emptyListGivesADefaultServerSilently()
    {
        Settings settings;
        settings.setServerName("gone");
        VpnServerSelector selector(api(), settings);
        QSignalSpy changed(&selector, &VpnServerSelector::serverWasChanged);
        const VpnServerInformation server = selector.currServer();
        QCOMPARE(server.countryId, -1);
        QVERIFY(server.name.isEmpty());
        QVERIFY(changed.isEmpty());
        QCOMPARE(settings.serverName(), QString("gone"));
    }
};

TAVERO_TEST_GUILESS_MAIN(TestVpnServerSelector)
#include "tst_vpnserverselector.moc"
