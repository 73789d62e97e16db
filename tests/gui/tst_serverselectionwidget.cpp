// The server selection page against a real controller and VPN manager over a scripted service:
// the two sections and their titles, country rows with flag, code and load, single-click
// selection, back, column widths and the load refresh.
#include "gui/pages/serverselectionwidget.h"
#include "gui/shell/serverselectioncontroller.h"
#include "manager/vpnmanager.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/serverlistmaker.h"
#include "support/testmain.h"
#include "support/widgetpainting.h"

#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>

using Gui::ServerSelectionWidget;
using tavero::test::FakeViewManager;
using tavero::test::ManagerFixture;
using tavero::test::pngBytes;
using tavero::test::ServerListMaker;

namespace {

// Germany (two servers, best de-2 at 7 %), France (one server at 26 %), Spain (no available
// server); Germany's de-2 is recommended.
ServerListGettingResult allServers()
{
    return ServerListMaker()
        .country(1, "de", "Germany")
        .country(2, "fr", "France")
        .country(3, "es", "Spain")
        .server(1, "de-1", 30)
        .server(1, "de-2", 7, true, true)
        .server(2, "fr-1", 26)
        .server(3, "es-1", 5, false)
        .list();
}

ServerListGettingResult recommendedServers()
{
    return ServerListMaker().country(1, "de", "Germany").server(1, "de-2", 7, true, true).list();
}

struct SelectionPage {
    ManagerFixture fixture;
    FakeViewManager viewManager;
    ServerSelectionController controller{fixture.manager(), viewManager};
    ServerSelectionWidget page{fixture.manager(), controller};

    explicit SelectionPage(const ServerListGettingResult& recommended = recommendedServers())
    {
        fixture.answerReachable(allServers(), recommended);
        fixture.api().flagPicture = pngBytes(Qt::blue);
        if (!fixture.logIn())
            qFatal("the scripted log-in failed");
        page.resize(360, 550);
        page.fillUp();
    }

    QTreeWidget* tree() { return page.findChild<QTreeWidget*>("treeServers"); }
    QTreeWidgetItem* row(int index) { return tree()->topLevelItem(index); }
    QString code(int index) { return row(index)->data(0, Qt::UserRole).toString(); }
    QString currentServer() { return fixture.manager().vpnServers().currServer().name; }

    // The rows as "<type>:<code>:<load>", headers as "title".
    QStringList outline()
    {
        QStringList rows;
        for (int i = 0; i < tree()->topLevelItemCount(); ++i) {
            QTreeWidgetItem* item = row(i);
            if (item->type() == ServerSelectionWidget::HeaderItem)
                rows << QStringLiteral("title");
            else
                rows << QStringLiteral("%1:%2").arg(code(i), item->text(2));
        }
        return rows;
    }

    // Shown on screen with France as the current server.
    void showOnFrance()
    {
        page.show();
        if (!QTest::qWaitForWindowExposed(&page))
            qFatal("the page was never shown");
        fixture.manager().vpnServers().setCurrServer("fr-1");
    }

    void click(int index)
    {
        tree()->scrollToItem(row(index));
        const QRect rect = tree()->visualItemRect(row(index));
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, rect.center());
    }
};

} // namespace

class TestServerSelectionWidget : public QObject {
    Q_OBJECT

private slots:
    void bothSectionsWithTheirTitles()
    {
        SelectionPage selection;
        QCOMPARE(selection.outline(),
                 (QStringList{"title", "de:7%", "title", "fr:26%", "de:7%", ":"}));
        QTreeWidgetItem* recommended = selection.row(0);
        QVERIFY(recommended->text(0).contains(" label.recommended_servers</span>"));
        QVERIFY(recommended->text(0).contains("..........</span>"));
        QVERIFY(recommended->isFirstColumnSpanned());
        QCOMPARE(recommended->background(0).color(), QColor(Qt::white));
        QTreeWidgetItem* all = selection.row(2);
        QVERIFY(all->text(0).contains(" label.all_servers</span>"));
        QVERIFY(all->text(0).contains(">........</span>"));
        QVERIFY(!all->text(0).contains(".........."));
        // Countries come in the controller's order: sorted by name.
        QCOMPARE(selection.row(3)->text(1),
                 QStringLiteral("<span style=\"font-weight: 500;\">France</span>"));
        QVERIFY(selection.row(5)->text(1).contains("Spain"));
    }

    void recommendedSectionIsAbsentWhenItsListIsEmpty()
    {
        SelectionPage selection{ServerListGettingResult{}};
        QCOMPARE(selection.outline(), (QStringList{"title", "fr:26%", "de:7%", ":"}));
        QVERIFY(selection.row(0)->text(0).contains("label.all_servers"));
    }

    void sectionWithoutServersIsLeftOut()
    {
        SelectionPage selection;
        ServersPresentationData data;
        CountryPresentationData empty;
        empty.country.name = QStringLiteral("Nowhere");
        empty.country.code = QStringLiteral("nw");
        data.recommended = {empty};
        data.all = {empty};
        selection.page.showServerData(selection.tree(), data);
        QCOMPARE(selection.tree()->topLevelItemCount(), 0);

        CountryPresentationData germany = empty;
        germany.country.name = QStringLiteral("Germany");
        germany.country.code = QStringLiteral("de");
        germany.servers = allServers().serversByCountry.value(1);
        data.all = {empty, germany};
        selection.page.showServerData(selection.tree(), data);
        QCOMPARE(selection.outline(), (QStringList{"title", "de:7%"}));
    }

    void countryRowCarriesItsFlag()
    {
        SelectionPage selection;
        const QPixmap icon = selection.row(1)->icon(0).pixmap(QSize(72, 35));
        QCOMPARE(icon.size(), QSize(72, 35));
        const QImage image = icon.toImage();
        QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        QCOMPARE(image.pixelColor(32, 6), QColor("#A4ADC2"));
        QCOMPARE(image.pixelColor(67, 29), QColor("#A4ADC2"));
        QCOMPARE(image.pixelColor(33, 7), QColor(Qt::blue));
        QCOMPARE(image.pixelColor(66, 28), QColor(Qt::blue));
        QCOMPARE(image.pixelColor(68, 15).alpha(), 0);
    }

    void clickingACountrySelectsItAtOnce()
    {
        SelectionPage selection;
        selection.showOnFrance();

        selection.click(4); // Germany under "All servers"
        QCOMPARE(selection.viewManager.calls(), QStringList{"goToStatus(false)"});
        QCOMPARE(selection.currentServer(), QStringLiteral("de-2"));
    }

    void clickingATitleDoesNothing()
    {
        SelectionPage selection;
        selection.showOnFrance();
        selection.click(0);
        selection.click(2);
        QVERIFY(selection.viewManager.calls().isEmpty());
        QCOMPARE(selection.currentServer(), QStringLiteral("fr-1"));
        QVERIFY(selection.viewManager.fakeUtils().boxes().isEmpty());
    }

    void doubleClickSelectsOnlyOnce()
    {
        SelectionPage selection;
        selection.page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&selection.page));
        const QRect rect = selection.tree()->visualItemRect(selection.row(3));
        QTest::mouseDClick(selection.tree()->viewport(), Qt::LeftButton, {}, rect.center());
        QCOMPARE(selection.viewManager.calls(), QStringList{"goToStatus(false)"});
        QCOMPARE(selection.currentServer(), QStringLiteral("fr-1"));
    }

    void countryWithoutAvailableServerCannotBeChosen()
    {
        SelectionPage selection;
        selection.showOnFrance();
        QVERIFY(selection.row(5)->text(1).contains("Spain"));
        QVERIFY(selection.row(5)->data(0, Qt::UserRole).isNull());
        QVERIFY(selection.row(5)->text(2).isEmpty());

        selection.click(5);
        QCOMPARE(selection.currentServer(), QStringLiteral("fr-1"));
        QVERIFY(selection.viewManager.calls().isEmpty());
        // The controller says why.
        QCOMPARE(selection.viewManager.fakeUtils().texts(),
                 QStringList{"warning.no_server_available_in_country_select_another"});
    }

    void backReturnsToTheStatusPage()
    {
        SelectionPage selection;
        QTest::mouseClick(selection.page.findChild<QPushButton*>("pushButtonBack"), Qt::LeftButton);
        QCOMPARE(selection.viewManager.calls(), QStringList{"goToStatus(false)"});
    }

    void fillingUpSelectsNothing()
    {
        SelectionPage selection;
        selection.page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&selection.page));
        selection.page.fillUp();
        QVERIFY(selection.viewManager.calls().isEmpty());
    }

    void onlyTheNameColumnFollowsTheWidth()
    {
        SelectionPage selection;
        selection.page.show();
        QVERIFY(QTest::qWaitForWindowExposed(&selection.page));
        const auto expectedName = [&] {
            return int(selection.tree()->width() - 87 - selection.page.thirdColumnWidth() -
                       1.5 * selection.page.style()->pixelMetric(QStyle::PM_ScrollBarExtent) - 30);
        };
        QCOMPARE(selection.tree()->columnWidth(1), expectedName());
        const int narrowName = selection.tree()->columnWidth(1);
        // The badge column takes what is left of the row, which leaves room for the capsule.
        const int badge = selection.tree()->columnWidth(2);
        QVERIFY(badge >= selection.page.thirdColumnWidth() + 3);

        selection.page.resize(600, 550);
        QTRY_COMPARE(selection.tree()->columnWidth(1), expectedName());
        QCOMPARE(selection.tree()->columnWidth(1) - narrowName, 240);
        QCOMPARE(selection.tree()->columnWidth(0), 87);
        QCOMPARE(selection.tree()->columnWidth(2), badge);
    }

    void badgeColumnMeasurements()
    {
        SelectionPage selection;
        const QFont font = selection.page.percentageFont();
        QCOMPARE(font.pointSize(), 7);
        QCOMPARE(font.weight(), 87);
        QCOMPARE(font.family(), QStringLiteral("Montserrat"));
        QCOMPARE(selection.page.percentageMargin(), 10);
        QCOMPARE(selection.page.thirdColumnWidth(),
                 QFontMetrics(font).horizontalAdvance("88%") + 20);
    }

    void loadRefreshUpdatesTheShownRows()
    {
        SelectionPage selection;
        ServerListGettingResult changed = allServers();
        changed.serversByCountry[1][1].load = 64; // de-2; de-1 (30) becomes the best
        changed.serversByCountry[2][0].load = 3;
        selection.fixture.api().serverList = changed;

        QVERIFY(QMetaObject::invokeMethod(&selection.page, "updateServersLoading"));
        QCOMPARE(selection.outline(),
                 (QStringList{"title", "de:30%", "title", "fr:3%", "de:30%", ":"}));
    }

    void countryNameIsShownAsText()
    {
        SelectionPage selection;
        ServersPresentationData data;
        CountryPresentationData odd;
        odd.country.name = QStringLiteral("<b>Bold</b> & Co");
        odd.country.code = QStringLiteral("bo");
        odd.servers = allServers().serversByCountry.value(2);
        data.all = {odd};
        selection.page.showServerData(selection.tree(), data);
        QVERIFY(selection.row(1)->text(1).contains("&lt;b&gt;Bold&lt;/b&gt; &amp; Co"));
    }
};

TAVERO_TEST_GUI_MAIN(TestServerSelectionWidget)
#include "tst_serverselectionwidget.moc"
