#pragma once

#include "gui/shell/iviewmanagerutils.h"

#include <QPointer>
#include <QVector>

// The view manager's message boxes and busy cursor. The current page is whatever the view
// manager last put on screen; the wait cursor disables it while an operation runs.
class ViewManagerUtils : public IViewManagerUtils {
public:
    ViewManagerUtils() = default;
    ~ViewManagerUtils() override;

    QWidget* parentForMessages() const override;
    void setParentForMessages(QWidget* widget) override;

    QMessageBox::StandardButton information(const QString& title, const QString& text,
                                            QMessageBox::StandardButtons buttons,
                                            QMessageBox::StandardButton defaultButton) override;
    QMessageBox::StandardButton question(const QString& title, const QString& text,
                                         QMessageBox::StandardButtons buttons,
                                         QMessageBox::StandardButton defaultButton) override;
    QMessageBox::StandardButton warning(const QString& title, const QString& text,
                                        QMessageBox::StandardButtons buttons,
                                        QMessageBox::StandardButton defaultButton) override;
    QMessageBox::StandardButton critical(const QString& title, const QString& text,
                                         QMessageBox::StandardButtons buttons,
                                         QMessageBox::StandardButton defaultButton) override;

    void showWaitCursor(bool disableCurrent) override;
    void restoreCursor() override;

    // Runs a modal box without a parent. Yes and No are replaced by the translated "action.yes"
    // (accept role) and "action.no" (reject role) buttons, which answer Ok and Cancel; any other
    // button answers its own standard value, a box closed without a button NoButton.
    static QMessageBox::StandardButton execMessageBox(QMessageBox::Icon icon, const QString& title,
                                                      const QString& text,
                                                      QMessageBox::StandardButtons buttons,
                                                      QMessageBox::StandardButton defaultButton);

    // Nesting depth of the busy cursor (0 when none is shown).
    int waitCursorDepth() const { return m_waitCursorDepth; }

private:
    // Guarded, so a page destroyed while the cursor is up is simply skipped.
    QPointer<QWidget> m_currentPage;
    QVector<QPointer<QWidget>> m_disabledWidgets;
    int m_waitCursorDepth = 0;
};
