#pragma once

#include <QMessageBox>

class QWidget;

// Modal message boxes and the busy cursor. Boxes offering Yes and No show the translated
// "action.yes" / "action.no" buttons instead and answer Ok for yes and Cancel for no; callers
// therefore never receive Yes or No.
class IViewManagerUtils {
public:
    virtual ~IViewManagerUtils() = default;

    // The page currently shown; the wait cursor disables it. May be null.
    virtual QWidget* parentForMessages() const = 0;
    virtual void setParentForMessages(QWidget* widget) = 0;

    virtual QMessageBox::StandardButton information(const QString& title, const QString& text,
                                                    QMessageBox::StandardButtons buttons,
                                                    QMessageBox::StandardButton defaultButton) = 0;
    virtual QMessageBox::StandardButton question(const QString& title, const QString& text,
                                                 QMessageBox::StandardButtons buttons,
                                                 QMessageBox::StandardButton defaultButton) = 0;
    virtual QMessageBox::StandardButton warning(const QString& title, const QString& text,
                                                QMessageBox::StandardButtons buttons,
                                                QMessageBox::StandardButton defaultButton) = 0;
    virtual QMessageBox::StandardButton critical(const QString& title, const QString& text,
                                                 QMessageBox::StandardButtons buttons,
                                                 QMessageBox::StandardButton defaultButton) = 0;

    // Pushes the busy cursor; with disableCurrent, also disables the current page until the
    // outermost restoreCursor(). Calls nest.
    virtual void showWaitCursor(bool disableCurrent) = 0;
    // Pops one busy cursor; the last one re-enables the pages disabled meanwhile.
    virtual void restoreCursor() = 0;
};
