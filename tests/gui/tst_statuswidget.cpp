// The status page against real controllers and a real VPN manager over a scripted service and
// platform: connecting with its remote-desktop question, the switch to the next server with its
// re-entrance guard, chain reports as bubbles, and the question after a protocol change.
#include "gui/pages/statuswidget.h"
#include "gui/shell/serverselectioncontroller.h"
#include "gui/shell/statuscontroller.h"
#include "manager/vpnmanager.h"
#include "platform/platformoverrides.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/messageboxdriver.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <QPushButton>
#include <QSignalSpy>

using tavero::ConnectionChain;
using tavero::PlatformOverrides;
using tavero::test::FakeViewManager;
using tavero::test::ManagerFixture;
using tavero::test::MessageBoxDriver;
using tavero::test::ServerListMaker;

namespace {

// Germany with three servers, France with one; nothing recommended.
ServerListGettingResult serverList()
{
    return ServerListMaker()
        .country(1, "de", "Germany")
        .country(2, "fr", "France")
        .server(1, "de-1", 10)
        .server(1, "de-2", 20)
        .server(1, "de-3", 30)
        .server(2, "fr-1", 40)
        .list();
}

// A logged-in status page with everything it talks to.
struct StatusPage {
    ManagerFixture fixture;
    FakeViewManager viewManager;
    StatusController statusController{fixture.manager(), viewManager};
    ServerSelectionController serverController{fixture.manager(), viewManager};
    Gui::StatusWidget page{fixture.manager(), statusController, serverController,
                           viewManager.fakeBubbles()};

    StatusPage()
    {
        fixture.answerReachable(serverList(), ServerListGettingResult{});
        if (!fixture.logIn())
            qFatal("the scripted log-in failed");
        selectServer(QStringLiteral("de-1"));
        page.fillUp();
    }

    tavero::VpnManager& manager() { return fixture.manager(); }
    ConnectionChain& chain() { return fixture.manager().connection(); }

    void selectServer(const QString& name) { manager().vpnServers().setCurrServer(name); }
    QString currentServer() { return manager().vpnServers().currServer().name; }

    QPushButton* button(const char* name)
    {
        auto* widget = page.findChild<QPushButton*>(QString::fromLatin1(name));
        if (!widget)
            qFatal("no button %s", name);
        return widget;
    }
    QPushButton* nextButton() { return button("pushButtonNextServer"); }
    void clickConnect() { QTest::mouseClick(button("pushButtonConnect"), Qt::LeftButton); }
    bool connected() { return chain().mode() == ConnectionChain::Connected; }

    static void hover(QWidget* widget, QEvent::Type type)
    {
        QEvent event(type);
        QApplication::sendEvent(widget, &event);
    }

    int connects() { return fixture.platform().callCount(QStringLiteral("connectIKEv2")); }
    int disconnects() { return fixture.platform().callCount(QStringLiteral("disconnect")); }
};

} // namespace

class TestStatusWidget : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        PlatformOverrides::setAdministrator(std::nullopt);
        PlatformOverrides::setRdpListening(std::nullopt);
    }

    void twoQuickClicksSwitchOnce()
    {
        StatusPage status;
        status.clickConnect();
        StatusPage::hover(status.nextButton(), QEvent::Enter);
        QVERIFY(status.nextButton()->isEnabled());

        // The second click lands while the first still waits for the server list.
        int secondClicks = 0;
        status.fixture.api().onCall("receiveServerList", [&] {
            if (secondClicks++ == 0)
                QTest::mouseClick(status.nextButton(), Qt::LeftButton);
        });
        QTest::mouseClick(status.nextButton(), Qt::LeftButton);
        QCOMPARE(secondClicks, 1);
        QCOMPARE(status.currentServer(), QStringLiteral("de-2"));

        // The guard is released afterwards: the next click switches again.
        status.fixture.api().onCall("receiveServerList", [] {});
        StatusPage::hover(status.nextButton(), QEvent::Enter);
        QTest::mouseClick(status.nextButton(), Qt::LeftButton);
        QCOMPARE(status.currentServer(), QStringLiteral("de-3"));
        QTest::mouseClick(status.button("pushButtonDisconnect"), Qt::LeftButton);
        QVERIFY(!status.connected());
        QVERIFY(!status.button("pushButtonConnect")->isHidden());
    }

    // A remote-desktop server listens: only an IKEv2-only connect without administrator rights
    // (which takes the routes) asks first.
    void remoteDesktopQuestionBeforeIkev2_data()
    {
        QTest::addColumn<bool>("administrator");
        QTest::addColumn<int>("protocols");
        QTest::addColumn<bool>("asks");
        const int ikev2 = int(ProtocolType::IKEv2);
        QTest::newRow("asked") << false << ikev2 << true;
        QTest::newRow("administrator") << true << ikev2 << false;
        QTest::newRow("automatic protocol") << false << 31 << false;
    }

    void remoteDesktopQuestionBeforeIkev2()
    {
        QFETCH(bool, administrator);
        QFETCH(int, protocols);
        QFETCH(bool, asks);
        StatusPage status;
        status.manager().settings().setProtocolTypes(QFlags<ProtocolType>(protocols));
        PlatformOverrides::setAdministrator(administrator);
        PlatformOverrides::setRdpListening(true);
        const int reachabilityChecks = status.fixture.api().calls("isThereInternet");
        QSignalSpy started(&status.page, &Gui::AbstractContentPage::aboutToStartWaiting);
        QSignalSpy stopped(&status.page, &Gui::AbstractContentPage::aboutToStopWaiting);
        MessageBoxDriver driver;
        if (asks)
            driver.clickOnNextBox("action.continue");
        status.clickConnect();

        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join("; ")));
        QCOMPARE(driver.seen().size(), asks ? 1 : 0);
        // Answered or not asked, the connect goes ahead: it first asks whether there is a network.
        QVERIFY(status.fixture.api().calls("isThereInternet") > reachabilityChecks);
        QCOMPARE(started.count(), 1);
        QCOMPARE(stopped.count(), 1);
    }

    void protocolChangeWhileConnectedOffersAReconnect_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("reconnects");
        QTest::newRow("yes") << "action.yes" << true;
        QTest::newRow("no") << "action.no" << false;
    }

    void protocolChangeWhileConnectedOffersAReconnect()
    {
        QFETCH(QString, answer);
        QFETCH(bool, reconnects);
        StatusPage status;
        status.clickConnect();
        QVERIFY(status.connected());
        const int connects = status.connects();
        const int disconnects = status.disconnects();

        MessageBoxDriver driver;
        driver.clickOnNextBox(answer);
        status.page.onSettedNewProtocol();

        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join("; ")));
        QCOMPARE(driver.seen().size(), 1);
        QCOMPARE(status.disconnects() > disconnects, reconnects);
        QCOMPARE(status.connects() > connects, reconnects);
        QVERIFY(status.connected());
    }

    // The chain's reports reach the user as tray bubbles (none for a failed re-establishment),
    // with the page waiting while it re-establishes.
    void chainReportsBecomeBubbles()
    {
        StatusPage status;
        QSignalSpy stopped(&status.page, &Gui::AbstractContentPage::aboutToStopWaiting);
        emit status.chain().protocolChanged();
        emit status.chain().protocolsExpired();
        for (const bool success : {false, true}) {
            emit status.chain().reestablishStarted();
            emit status.chain().reestablishFinished(success);
        }
        QCOMPARE(stopped.count(), 2);
        QCOMPARE(status.viewManager.fakeBubbles().texts().size(), 3);
    }
};

TAVERO_TEST_GUI_MAIN(TestStatusWidget)
#include "tst_statuswidget.moc"
