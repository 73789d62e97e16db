#include "manager/vpnmanager.h"
#include "support/managerfixture.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QTranslator>
#include <memory>

using tavero::test::ManagerFixture;
using tavero::test::ServerListMaker;

namespace {

ServerListGettingResult oneCountry()
{
    return ServerListMaker()
        .country(1, QStringLiteral("de"), QStringLiteral("Germany"))
        .server(1, QStringLiteral("de-1"), 10, true, true)
        .list();
}

} // namespace

// The manager's login and connect paths as the pages and tavero-cli see them, over a scripted
// service client and platform, with the English catalogue so the messages are the user's texts.
class TestVpnManager : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void everyLoginChecksTheAddressAfresh();
    void autoLoginUsesStoredToken_data();
    void autoLoginUsesStoredToken();
    void connectWithoutServerListLeavesChainAlone_data();
    void connectWithoutServerListLeavesChainAlone();

private:
    QTranslator m_english;
    std::unique_ptr<ManagerFixture> m_fixture;
};

void TestVpnManager::initTestCase()
{
    QVERIFY(m_english.load(QStringLiteral(":/translations/eng")));
    QCoreApplication::installTranslator(&m_english);
}

void TestVpnManager::init()
{
    m_fixture = std::make_unique<ManagerFixture>();
    m_fixture->answerReachable(oneCountry(), oneCountry());
}

void TestVpnManager::cleanup()
{
    m_fixture.reset();
}

void TestVpnManager::everyLoginChecksTheAddressAfresh()
{
    QVERIFY(m_fixture->logIn());
    QCOMPARE(m_fixture->api().calls(QStringLiteral("receiveIp")), 1);
    m_fixture->api().ipResult.ip = QStringLiteral("198.51.100.9");
    QVERIFY(m_fixture->logIn());
    QCOMPARE(m_fixture->api().calls(QStringLiteral("receiveIp")), 2);
    QCOMPARE(m_fixture->manager().ipAdress(), QStringLiteral("198.51.100.9"));
    // The recommended list is asked for the fresh address.
    QCOMPARE(m_fixture->api().lastRecommendedIp, QStringLiteral("198.51.100.9"));
}

void TestVpnManager::autoLoginUsesStoredToken_data()
{
    QTest::addColumn<bool>("addressKnown");
    QTest::newRow("address check answers") << true;
    QTest::newRow("address check fails: nothing more is asked") << false;
}

void TestVpnManager::autoLoginUsesStoredToken()
{
    QFETCH(bool, addressKnown);
    m_fixture->manager().settings().setToken(QStringLiteral("stored-token"));
    m_fixture->api().currentToken.clear();
    if (!addressKnown)
        m_fixture->api().ipResult.status = RequestResult::NoInternet;
    QCOMPARE(m_fixture->manager().tryAutoLoginOnRestart().isSuccess, addressKnown);
    QCOMPARE(m_fixture->api().calls(QStringLiteral("loginByEmail")), 0);
    QCOMPARE(m_fixture->api().calls(QStringLiteral("receiveServerList")), addressKnown ? 1 : 0);
    QCOMPARE(m_fixture->api().calls(QStringLiteral("receiveAccountInfo")), addressKnown ? 1 : 0);
    if (addressKnown)
        QCOMPARE(m_fixture->api().currentToken, QStringLiteral("stored-token"));
}

void TestVpnManager::connectWithoutServerListLeavesChainAlone_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("text");

    QTest::newRow("no reply") << int(RequestResult::NoInternet)
                              << QStringLiteral("Connection failed. Check network connection.");
    QTest::newRow("server error") << int(RequestResult::ServerError)
                                  << QStringLiteral("Unable to get information about VPN servers.");
}

void TestVpnManager::connectWithoutServerListLeavesChainAlone()
{
    QFETCH(int, status);
    QFETCH(QString, text);
    m_fixture->api().serverList = ServerListMaker().list(status);
    QSignalSpy modes(&m_fixture->manager().connection(), &tavero::ConnectionChain::modeChanged);

    const OperationResult result = m_fixture->manager().connect();
    QVERIFY(!result.isSuccess);
    QCOMPARE(result.message, text);
    QCOMPARE(m_fixture->api().calls(QStringLiteral("receiveServerList")), 1);
    // The chain never ran: no mode change, no reachability test, no dial.
    QCOMPARE(modes.count(), 0);
    QCOMPARE(m_fixture->api().calls(QStringLiteral("isThereInternet")), 0);
    QCOMPARE(m_fixture->platform().callCount(QStringLiteral("connectIKEv2")), 0);
    QCOMPARE(m_fixture->manager().connection().mode(), tavero::ConnectionChain::Disconnected);
}

TAVERO_TEST_GUILESS_MAIN(TestVpnManager)
#include "tst_vpnmanager.moc"
