#include "gui/shell/serverselectioncontroller.h"
#include "manager/vpnmanager.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/pngbytes.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QApplication>
#include <QTranslator>
#include <memory>

using tavero::test::FakeViewManager;
using tavero::test::ManagerFixture;
using tavero::test::ServerListMaker;

namespace {

QByteArray flagBytes()
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::blue);
    return tavero::test::pngBytes(image);
}

// Germany: de-1 (second in the reply), de-2, de-3 all available, plus one unavailable; France:
// one available server; Netherlands: nothing available; Austria: no servers at all.
ServerListMaker fullMaker()
{
    ServerListMaker maker;
    maker.country(13, QStringLiteral("de"), QStringLiteral("Germany"))
        .country(15, QStringLiteral("fr"), QStringLiteral("France"))
        .country(20, QStringLiteral("nl"), QStringLiteral("Netherlands"))
        .country(21, QStringLiteral("at"), QStringLiteral("Austria"))
        .server(13, QStringLiteral("de-2"), 30)
        .server(13, QStringLiteral("de-1"), 20)
        .server(13, QStringLiteral("de-9"), 0, false)
        .server(13, QStringLiteral("de-3"), 40)
        .server(15, QStringLiteral("fr-1"), 0)
        .server(20, QStringLiteral("nl-1"), 5, false);
    return maker;
}

ServerListGettingResult recommendedList()
{
    // The service recommends de-3 for Germany although de-1 is less loaded overall.
    return ServerListMaker()
        .country(13, QStringLiteral("de"), QStringLiteral("Germany"))
        .server(13, QStringLiteral("de-3"), 40, true, true)
        .list();
}

} // namespace

class TestServerSelectionController : public QObject {
    Q_OBJECT
    tavero::VpnManager& manager() { return m_fixture->manager(); }
    tavero::VpnServerSelector& selector() { return manager().vpnServers(); }

    QTranslator m_english;
    std::unique_ptr<ManagerFixture> m_fixture;
    std::unique_ptr<FakeViewManager> m_view;
    std::unique_ptr<ServerSelectionController> m_controller;

private slots:
    void initTestCase()
    {
        QVERIFY(m_english.load(QStringLiteral(":/translations/eng")));
        QCoreApplication::installTranslator(&m_english);
    }

    void init()
    {
        m_fixture = std::make_unique<ManagerFixture>();
        m_fixture->answerReachable(fullMaker().list(), recommendedList());
        m_fixture->api().flagPicture = flagBytes();
        m_view = std::make_unique<FakeViewManager>();
        m_controller = std::make_unique<ServerSelectionController>(manager(), *m_view);
        QVERIFY(m_fixture->logIn());
    }

    void cleanup()
    {
        m_controller.reset();
        m_view.reset();
        m_fixture.reset();
    }

    void receiveServersUsesHeldListsWhileKillSwitchHoldsNetwork()
    {
        manager().settings().setKillSwitch(true);
        manager().killSwitcher().stopInternet();
        QVERIFY(manager().killSwitcher().isInternetOff());
        // What the service would answer now must not be seen.
        m_fixture->api().serverList = ServerListMaker().list(RequestResult::NoInternet);
        m_fixture->api().recommendedServerList = ServerListMaker().list(RequestResult::NoInternet);
        const int exchangesBefore = m_fixture->exchanges() - m_fixture->api().flagCalls();

        const ServersPresentationData data = m_controller->receiveServers();
        QCOMPARE(m_fixture->exchanges() - m_fixture->api().flagCalls(), exchangesBefore);
        QCOMPARE(data.all.size(), 3);
        QCOMPARE(data.recommended.size(), 1);
    }

    void undecodableFlagGivesNullImage()
    {
        m_fixture->api().flagPicture = QByteArrayLiteral("not a picture");
        QVERIFY(m_controller->countryPixmapFromCode(QStringLiteral("de")).isNull());
        m_fixture->api().flagPicture.clear();
        QVERIFY(m_controller->countryPixmapFromCode(QStringLiteral("de")).isNull());
        m_fixture->api().flagPicture = flagBytes();
        QCOMPARE(m_controller->countryPixmapFromCode(QStringLiteral("de")).size(), QSize(4, 3));
    }

    // A country's recommended server wins over a less loaded one of the full list; a country
    // without an available server gets a box and changes nothing.
    void countrySelection_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<QString>("chosen"); // empty: refused with a box
        QTest::newRow("recommended") << "de" << "de-3";
        QTest::newRow("full list") << "fr" << "fr-1";
        QTest::newRow("nothing available") << "nl" << QString();
        QTest::newRow("no servers") << "at" << QString();
        QTest::newRow("unknown country") << "zz" << QString();
    }

    void countrySelection()
    {
        QFETCH(QString, code);
        QFETCH(QString, chosen);
        const QString before = manager().settings().serverName();
        QSignalSpy changed(&selector(), &tavero::VpnServerSelector::serverWasChanged);
        m_controller->onCountrySelection(code);

        QCOMPARE(manager().settings().serverName(), chosen.isEmpty() ? before : chosen);
        QCOMPARE(changed.count(), chosen.isEmpty() ? 0 : 1);
        QCOMPARE(m_view->fakeUtils().boxes().size(), chosen.isEmpty() ? 1 : 0);
        QCOMPARE(m_view->calls().size(), chosen.isEmpty() ? 0 : 1);
    }

    void switchToNextServer_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("next");

        // Available servers in reply order: de-2, de-1, de-3 (de-9 is unavailable).
        QTest::newRow("first to second") << QStringLiteral("de-2") << QStringLiteral("de-1");
        QTest::newRow("second to third") << QStringLiteral("de-1") << QStringLiteral("de-3");
        QTest::newRow("third wraps to first") << QStringLiteral("de-3") << QStringLiteral("de-2");
    }

    void switchToNextServer()
    {
        QFETCH(QString, current);
        QFETCH(QString, next);
        selector().setCurrServer(current);
        m_controller->onSwitchToNextServer();
        QCOMPARE(manager().settings().serverName(), next);
        QVERIFY(m_view->calls().isEmpty());
    }
};

TAVERO_TEST_GUI_MAIN(TestServerSelectionController)
#include "tst_serverselectioncontroller.moc"
