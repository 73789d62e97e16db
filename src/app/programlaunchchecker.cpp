#include "app/programlaunchchecker.h"

#include "gui/shell/viewmanagerutils.h"

#include <QCoreApplication>
#include <QMessageBox>

bool ProgramLaunchChecker::checkDlg(const QString& name, const QString& displayName)
{
    if (!attach(name))
        return false;
    QMessageBox::warning(
        nullptr, displayName,
        QCoreApplication::translate("QObject", "label.program_is_already_running").arg(displayName),
        QMessageBox::Ok);
    return true;
}

bool ProgramLaunchChecker::checkProgrammTurnedDown(const QString& name, const QString& displayName)
{
    while (check(name)) {
        const QString text = QCoreApplication::translate(
                                 "QObject", "warning.program_is_already_running_want_to_continue")
                                 .arg(displayName);
        // The "action.yes" button answers Ok.
        const QMessageBox::StandardButton answer = ViewManagerUtils::execMessageBox(
            QMessageBox::Question, QString(), text, QMessageBox::Yes | QMessageBox::No,
            QMessageBox::NoButton);
        if (answer != QMessageBox::Ok)
            return false;
    }
    return true;
}
