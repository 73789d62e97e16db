#include "gui/pages/aboutprogrammwindowswidget.h"
#include "support/maptranslator.h"
#include "support/messageboxdriver.h"
#include "support/testmain.h"

#include <QDate>
#include <QLabel>
#include <QPushButton>

using tavero::test::MapTranslator;
using tavero::test::MessageBoxDriver;

namespace {

const char context[] = "AboutProgrammWindowsWidget";

QString textOf(const QWidget& parent, const char* name)
{
    if (auto* label = parent.findChild<QLabel*>(name))
        return label->text();
    if (auto* button = parent.findChild<QPushButton*>(name))
        return button->text();
    return QStringLiteral("<no widget %1>").arg(QLatin1String(name));
}

} // namespace

class TestAboutPage : public QObject {
    Q_OBJECT

    MapTranslator m_english;
    MapTranslator m_russian;

private slots:
    void initTestCase()
    {
        QCoreApplication::setApplicationVersion("1.2.3.10");
        m_english.add(context, "label.version", "Version")
            .add(context, "label.release_date", "Updated at")
            .add(context, "action.check_update", "Check for update")
            .add(context, "title.about_widget_title", "About")
            .add(context, "label.copyright", "Copyright");
        m_russian.add(context, "label.version", "Версия")
            .add(context, "label.release_date", "Обновлено")
            .add(context, "action.check_update", "Проверить обновления")
            .add(context, "title.about_widget_title", "О программе")
            .add(context, "label.copyright", "Авторские права")
            .add(context, "title.you_have_actual_version", "Проверка обновлений")
            .add(context, "message.you_have_actual_version", "У вас последняя версия");
    }

    void cleanup()
    {
        QCoreApplication::removeTranslator(&m_english);
        QCoreApplication::removeTranslator(&m_russian);
    }

    // The language manager first stores the new date text, then swaps the catalogue; the page
    // follows the language-change event on its own.
    void followsALanguageChange()
    {
        qApp->setProperty("AppLocaleDateString", "January 20, 2021");
        QCoreApplication::installTranslator(&m_english);
        AboutProgrammWindowsWidget about;
        QCOMPARE(textOf(about, "versionLabel_"), QString("Version 1.2.3.10"));
        QCOMPARE(textOf(about, "buildDateLabel_"), QString("Updated at: January 20, 2021"));
        QCOMPARE(textOf(about, "checkUpdateButton"), QString("Check for update"));
        QCOMPARE(about.windowTitle(), QString("About"));

        qApp->setProperty("AppLocaleDateString", "20 января 2021 г.");
        QCoreApplication::removeTranslator(&m_english);
        QCoreApplication::installTranslator(&m_russian);

        QTRY_COMPARE(textOf(about, "versionLabel_"), QString("Версия 1.2.3.10"));
        QCOMPARE(textOf(about, "buildDateLabel_"), QString("Обновлено: 20 января 2021 г."));
        QCOMPARE(textOf(about, "checkUpdateButton"), QString("Проверить обновления"));
        QCOMPARE(about.windowTitle(), QString("О программе"));
        QVERIFY(textOf(about, "copyRightLabel").startsWith("Авторские права"));

        // The box texts follow as well.
        MessageBoxDriver driver;
        driver.clickOnNextBox("OK");
        about.showYouHaveTheLatestVersion();
        QVERIFY2(driver.failures().isEmpty(), qPrintable(driver.failures().join('\n')));
        QCOMPARE(driver.seen().first().title, QString("Проверка обновлений"));
        QCOMPARE(driver.seen().first().text, QString("У вас последняя версия"));
    }

    void copyrightNamesTheCurrentYear()
    {
        AboutProgrammWindowsWidget about;
        const QString year = QString::number(QDate::currentDate().year());
        QVERIFY2(textOf(about, "copyRightLabel").contains(year),
                 qPrintable(textOf(about, "copyRightLabel")));
    }

    void checkButtonAsksForAnUpdateCheck()
    {
        AboutProgrammWindowsWidget about;
        QSignalSpy spy(&about, &AboutProgrammWindowsWidget::checkNewVersionAppSignal);
        auto* button = about.findChild<QPushButton*>("checkUpdateButton");
        QVERIFY(button);
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(spy.count(), 1);
    }
};

TAVERO_TEST_GUI_MAIN(TestAboutPage)
#include "tst_aboutpage.moc"
