// The login, status and server selection pages against the embedded catalogues: built in one
// language, switched to each of the five, every text a user sees is translated, including the
// texts the status page sets from code and the server list's section titles.
#include "gui/pages/loginwidget.h"
#include "gui/pages/serverselectionwidget.h"
#include "gui/pages/statuswidget.h"
#include "gui/shell/logincontroller.h"
#include "gui/shell/serverselectioncontroller.h"
#include "gui/shell/statuscontroller.h"
#include "manager/vpnmanager.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/pagetexts.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"

#include <QAbstractButton>
#include <QTranslator>
#include <QTreeWidget>

using tavero::test::FakeViewManager;
using tavero::test::ManagerFixture;
using tavero::test::ServerListMaker;
using tavero::test::untranslatedKeys;
using tavero::test::visibleTexts;

namespace {

struct Pages {
    ManagerFixture fixture;
    FakeViewManager viewManager;
    LoginController loginController{fixture.manager(), viewManager};
    StatusController statusController{fixture.manager(), viewManager};
    ServerSelectionController serverController{fixture.manager(), viewManager};
    Gui::LoginWidget login{fixture.manager(), loginController};
    Gui::StatusWidget status{fixture.manager(), statusController, serverController,
                             viewManager.fakeBubbles()};
    Gui::ServerSelectionWidget selection{fixture.manager(), serverController};

    Pages()
    {
        const ServerListGettingResult list = ServerListMaker()
                                                 .country(1, "de", "Germany")
                                                 .server(1, "de-1", 10, true, true)
                                                 .server(1, "de-2", 20)
                                                 .list();
        fixture.answerReachable(list, list);
        if (!fixture.logIn())
            qFatal("the scripted log-in failed");
        status.fillUp();
        selection.fillUp();
    }

    void reTranslate()
    {
        login.reTranslateUI();
        status.reTranslateUI();
        selection.reTranslateUI();
    }
};

} // namespace

class TestPageLanguages : public QObject {
    Q_OBJECT

    QTranslator m_translator;

private slots:
    void initTestCase_data()
    {
        QTest::addColumn<QString>("language");
        for (const char* language : {"eng", "fra", "ger", "rus", "spa"})
            QTest::newRow(language) << language;
    }

    void cleanup() { QCoreApplication::removeTranslator(&m_translator); }

    void everyTextFollowsALanguageChange_data()
    {
        QTest::addColumn<bool>("connected");
        QTest::newRow("disconnected") << false;
        QTest::newRow("connected") << true;
    }

    void everyTextFollowsALanguageChange()
    {
        QFETCH_GLOBAL(QString, language);
        QFETCH(bool, connected);
        Pages pages;
        if (connected) {
            QVERIFY(pages.fixture.connect());
            pages.status.fillUp();
        }
        // Before: the keys themselves are on screen.
        QVERIFY(!untranslatedKeys(visibleTexts(pages.login)).isEmpty());
        QVERIFY(!untranslatedKeys(visibleTexts(pages.status)).isEmpty());
        QVERIFY(!untranslatedKeys(visibleTexts(pages.selection)).isEmpty());

        QVERIFY(m_translator.load(":/translations/" + language));
        QCoreApplication::installTranslator(&m_translator);
        pages.reTranslate();

        for (const QWidget* page :
             {static_cast<QWidget*>(&pages.login), static_cast<QWidget*>(&pages.status),
              static_cast<QWidget*>(&pages.selection)}) {
            const QStringList texts = visibleTexts(*page);
            QVERIFY2(untranslatedKeys(texts).isEmpty(),
                     qPrintable(page->objectName() + ": " + untranslatedKeys(texts).join(" | ")));
        }
    }

    void killSwitchTextIsTranslated()
    {
        QFETCH_GLOBAL(QString, language);
        Pages pages;
        pages.fixture.manager().settings().setKillSwitch(true);
        pages.fixture.manager().killSwitcher().stopInternet();
        QVERIFY(m_translator.load(":/translations/" + language));
        QCoreApplication::installTranslator(&m_translator);
        pages.status.reTranslateUI();
        QCOMPARE(pages.status.findChild<QAbstractButton*>("pushButtonIp")->text(),
                 m_translator.translate("Gui::StatusWidget", "warning.killswitch_triggered"));
    }
};

TAVERO_TEST_GUI_MAIN(TestPageLanguages)
#include "tst_pagelanguages.moc"
