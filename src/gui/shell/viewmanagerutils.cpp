#include "gui/shell/viewmanagerutils.h"

#include <QApplication>
#include <QPushButton>

ViewManagerUtils::~ViewManagerUtils()
{
    // Never leave a page disabled or the cursor busy behind us.
    while (m_waitCursorDepth > 0)
        restoreCursor();
}

QWidget* ViewManagerUtils::parentForMessages() const
{
    return m_currentPage;
}

void ViewManagerUtils::setParentForMessages(QWidget* widget)
{
    m_currentPage = widget;
}

QMessageBox::StandardButton ViewManagerUtils::information(const QString& title, const QString& text,
                                                          QMessageBox::StandardButtons buttons,
                                                          QMessageBox::StandardButton defaultButton)
{
    return execMessageBox(QMessageBox::Information, title, text, buttons, defaultButton);
}

QMessageBox::StandardButton ViewManagerUtils::question(const QString& title, const QString& text,
                                                       QMessageBox::StandardButtons buttons,
                                                       QMessageBox::StandardButton defaultButton)
{
    return execMessageBox(QMessageBox::Question, title, text, buttons, defaultButton);
}

QMessageBox::StandardButton ViewManagerUtils::warning(const QString& title, const QString& text,
                                                      QMessageBox::StandardButtons buttons,
                                                      QMessageBox::StandardButton defaultButton)
{
    return execMessageBox(QMessageBox::Warning, title, text, buttons, defaultButton);
}

QMessageBox::StandardButton ViewManagerUtils::critical(const QString& title, const QString& text,
                                                       QMessageBox::StandardButtons buttons,
                                                       QMessageBox::StandardButton defaultButton)
{
    return execMessageBox(QMessageBox::Critical, title, text, buttons, defaultButton);
}

QMessageBox::StandardButton
ViewManagerUtils::execMessageBox(QMessageBox::Icon icon, const QString& title, const QString& text,
                                 QMessageBox::StandardButtons buttons,
                                 QMessageBox::StandardButton defaultButton)
{
    QMessageBox box;
    box.setWindowTitle(title);
    box.setText(text);
    box.setIcon(icon);

    QPushButton* yesButton = nullptr;
    QPushButton* noButton = nullptr;
    const bool wantsYes = buttons.testFlag(QMessageBox::Yes);
    const bool wantsNo = buttons.testFlag(QMessageBox::No);
    buttons &= ~QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No);
    // Standard buttons first: setting them replaces every standard button already in the box.
    box.setStandardButtons(buttons);
    if (wantsYes)
        yesButton = box.addButton(QObject::tr("action.yes"), QMessageBox::AcceptRole);
    if (wantsNo)
        noButton = box.addButton(QObject::tr("action.no"), QMessageBox::RejectRole);

    // A default of Yes or No still means the button that replaced it.
    if (defaultButton == QMessageBox::Yes && yesButton)
        box.setDefaultButton(yesButton);
    else if (defaultButton == QMessageBox::No && noButton)
        box.setDefaultButton(noButton);
    else
        box.setDefaultButton(defaultButton);

    box.exec();

    QAbstractButton* const clicked = box.clickedButton();
    if (!clicked)
        return QMessageBox::NoButton;
    if (clicked == yesButton)
        return QMessageBox::Ok;
    if (clicked == noButton)
        return QMessageBox::Cancel;
    return box.standardButton(clicked);
}

void ViewManagerUtils::showWaitCursor(bool disableCurrent)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    if (disableCurrent && m_currentPage) {
        m_currentPage->setEnabled(false);
        m_disabledWidgets.append(m_currentPage);
    }
    ++m_waitCursorDepth;
    QCoreApplication::processEvents();
}

void ViewManagerUtils::restoreCursor()
{
    // An unmatched restore must not unbalance the nesting of later calls.
    if (m_waitCursorDepth == 0)
        return;
    QApplication::restoreOverrideCursor();
    --m_waitCursorDepth;
    if (m_waitCursorDepth == 0) {
        for (const QPointer<QWidget>& widget : qAsConst(m_disabledWidgets)) {
            if (widget)
                widget->setEnabled(true);
        }
        m_disabledWidgets.clear();
    }
    QCoreApplication::processEvents();
}
