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
#include "support/serverlistmaker.h"
#include "support/testmain.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTranslator>
#include <QTreeWidget>

using tavero::test::FakeViewManager;
using tavero::test::ManagerFixture;
using tavero::test::ServerListMaker;

namespace {

// Every text a user can see on the page: labels, buttons, field placeholders, list rows.
QStringList visibleTexts(const QWidget& page)
{
    QStringList texts;
    for (const QLabel* label : page.findChildren<QLabel*>())
        texts << label->text();
    for (const QAbstractButton* button : page.findChildren<QAbstractButton*>())
        texts << button->text();
    for (const QLineEdit* field : page.findChildren<QLineEdit*>())
        texts << field->placeholderText();
    for (const QTreeWidget* tree : page.findChildren<QTreeWidget*>()) {
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            for (int column = 0; column < tree->columnCount(); ++column)
                texts << tree->topLevelItem(i)->text(column);
        }
    }
    texts.removeAll(QString());
    return texts;
}

QStringList keysIn(const QStringList& texts)
{
    static const QRegularExpression key(
        QStringLiteral("\\b(label|action|title|message|warning|body)\\.[a-z_]+"));
    QStringList keys;
    for (const QString& text : texts) {
        if (key.match(text).hasMatch())
            keys << text;
    }
    return keys;
}

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
        QVERIFY(!keysIn(visibleTexts(pages.login)).isEmpty());
        QVERIFY(!keysIn(visibleTexts(pages.status)).isEmpty());
        QVERIFY(!keysIn(visibleTexts(pages.selection)).isEmpty());

        QVERIFY(m_translator.load(":/translations/" + language));
        QCoreApplication::installTranslator(&m_translator);
        pages.reTranslate();

        for (const QWidget* page :
             {static_cast<QWidget*>(&pages.login), static_cast<QWidget*>(&pages.status),
              static_cast<QWidget*>(&pages.selection)}) {
            const QStringList texts = visibleTexts(*page);
            QVERIFY2(keysIn(texts).isEmpty(),
                     qPrintable(page->objectName() + ": " + keysIn(texts).join(" | ")));
        }

        // Spot checks in the contexts the catalogues use.
        const auto expect = [&](const char* context, const char* key) {
            return m_translator.translate(context, key);
        };
        QCOMPARE(pages.login.findChild<QLabel*>("label")->text(),
                 expect("LoginWidget", "label.authorization"));
        QCOMPARE(pages.status.findChild<QLabel*>("labelIsConnested")->text(),
                 expect("QObject", connected ? "label.connected" : "label.disconnected"));
        QCOMPARE(pages.status.findChild<QLabel*>("labelIsProtected")->text().trimmed(),
                 expect("QObject", connected ? "label.protected" : "label.not_secure"));
        QCOMPARE(pages.status.findChild<QLabel*>("labelYourIp")->text(),
                 expect("StatusWidget", "label.your_ip:"));
        QVERIFY(pages.selection.findChild<QTreeWidget*>()->topLevelItem(0)->text(0).contains(
            expect("Gui::ServerSelectionWidget", "label.recommended_servers")));
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
