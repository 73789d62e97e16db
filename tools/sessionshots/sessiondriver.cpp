#include "sessiondriver.h"

#include "api/iserverapi.h"
#include "api/serverapi.h"
#include "app/programassembly.h"
#include "app/settings.h"
#include "gui/pages/loginwidget.h"
#include "gui/pages/newversiondialog.h"
#include "gui/pages/serverselectionwidget.h"
#include "gui/pages/settingsdialog.h"
#include "gui/pages/statuswidget.h"
#include "gui/shell/mainwindow.h"
#include "gui/shell/viewmanager.h"
#include "manager/vpnmanager.h"
#include "support/clientstand.h"
#include "support/devservice.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

namespace tavero::sessionshots {

namespace {

const QMap<QString, QLocale::Language> languages = {
    {QStringLiteral("eng"), QLocale::English}, {QStringLiteral("rus"), QLocale::Russian},
    {QStringLiteral("fra"), QLocale::French},  {QStringLiteral("ger"), QLocale::German},
    {QStringLiteral("spa"), QLocale::Spanish},
};

void settle(int milliseconds = 150)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

} // namespace

SessionDriver::SessionDriver(QString outDirectory, QString language, QString changeTo)
    : m_out(std::move(outDirectory))
    , m_language(std::move(language))
    , m_changeTo(std::move(changeTo))
{}

bool SessionDriver::fail(const QString& text)
{
    m_error = QStringLiteral("%1 (step %2)").arg(text).arg(m_step);
    return false;
}

void SessionDriver::save(QWidget* widget, const QString& step)
{
    settle();
    const QString file = QDir(m_out).filePath(QStringLiteral("%1-%2-%3.png")
                                                  .arg(++m_step, 2, 10, QLatin1Char('0'))
                                                  .arg(step, m_language));
    if (widget && widget->grab().save(file))
        m_written << file;
}

void SessionDriver::whileModal(const std::function<void()>& open, const QString& step,
                               const std::function<void(QWidget*)>& close)
{
    QTimer poll;
    bool done = false;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || done)
            return;
        done = true;
        poll.stop();
        save(modal, step);
        close(modal);
    });
    poll.start(50);
    open();
}

bool SessionDriver::run()
{
    if (!QDir().mkpath(m_out))
        return fail(QStringLiteral("cannot create %1").arg(m_out));
    test::DevService service;
    QTemporaryDir markerDir;
    test::ClientStand stand(service, QStringLiteral(TAVERO_FAKE_OPENVPN_PATH));
    if (!stand.isReady())
        return fail(stand.errorText());
    {
        Settings settings;
        settings.setSelectedLanguage(m_language);
    }

    ProgramAssembly assembly(stand.options(markerDir.path()));
    // Not an administrator start: the update offer is left out of the session, and the warning
    // box, shown once the login page is up, is the first picture.
    bool assembled = false;
    whileModal([&] { assembled = assembly.assemble(false); }, QStringLiteral("warning"),
               [](QWidget* box) { static_cast<QDialog*>(box)->accept(); });
    if (!assembled)
        return fail(QStringLiteral("the assembly stopped"));
    // The session connects over OpenVPN, which the warning just switched off.
    ServerApi::setIsOpenVpnAllowed(true);

    ViewManager* views = assembly.viewManager();
    MainWindow* window = views->window();
    VpnManager& manager = *assembly.vpnManager();
    if (views->currentWidget() != views->loginPage())
        return fail(QStringLiteral("no login page"));
    views->loginPage()->findChild<QLineEdit*>("lineEditEmail")->setText(service.account(0).email);
    views->loginPage()
        ->findChild<QLineEdit*>("lineEditPassword")
        ->setText(service.account(0).password);
    save(window, QStringLiteral("login"));
    views->loginPage()->findChild<QPushButton*>("pushButtonEnter")->click();
    if (views->currentWidget() != views->statusPage())
        return fail(QStringLiteral("no status page after the login"));
    save(window, QStringLiteral("status"));

    views->statusPage()->findChild<QPushButton*>("pushButtonChangeServer")->click();
    if (views->currentWidget() != views->serverPage())
        return fail(QStringLiteral("no server page"));
    save(window, QStringLiteral("servers"));
    views->serverPage()->selectCountry(QStringLiteral("de"));
    if (views->currentWidget() != views->statusPage())
        return fail(QStringLiteral("no status page after the country"));

    views->statusPage()->findChild<QPushButton*>("pushButtonConnect")->click();
    if (manager.connection().mode() != ConnectionChain::Connected)
        return fail(QStringLiteral("not connected"));
    save(window, QStringLiteral("connected"));

    // As a user does: the change-server button remembers the server the tunnel runs on.
    views->statusPage()->findChild<QPushButton*>("pushButtonChangeServer")->click();
    views->serverPage()->selectCountry(QStringLiteral("nl"));
    if (manager.connection().mode() != ConnectionChain::Connected)
        return fail(QStringLiteral("not connected after the server change"));
    save(window, QStringLiteral("switched"));

    whileModal([&] { views->goToSettings(); }, QStringLiteral("settings"),
               [](QWidget* dialog) { static_cast<QDialog*>(dialog)->reject(); });
    emit views->settingsDialog()->onLanguageApplySignal(languages.value(m_changeTo));
    save(window, QStringLiteral("language-") + m_changeTo);

    whileModal([&] { window->exitFromProgramm(); }, QStringLiteral("exit"),
               [](QWidget* box) { static_cast<QDialog*>(box)->reject(); });
    if (window->isExitFromProgramProcessing())
        return fail(QStringLiteral("the exit went on after Cancel"));
    whileModal([&] { window->exitFromProgramm(); }, QStringLiteral("exit-again"),
               [](QWidget* box) {
                   auto* messageBox = qobject_cast<QMessageBox*>(box);
                   if (messageBox)
                       messageBox->button(QMessageBox::Ok)->click();
               });
    if (!manager.isProgrammTermination())
        return fail(QStringLiteral("the exit did not end the session"));
    return true;
}

} // namespace tavero::sessionshots
