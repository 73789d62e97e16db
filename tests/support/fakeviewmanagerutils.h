#pragma once

#include "gui/shell/iviewmanagerutils.h"

#include <QVector>

namespace tavero::test {

// Records every message box instead of showing it; every box answers NoButton (as a box closed
// without a choice). The wait cursor's nesting is only counted.
class FakeViewManagerUtils : public IViewManagerUtils {
public:
    enum class Kind { Information, Question, Warning, Critical };

    struct Box {
        Kind kind = Kind::Information;
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons;
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    };

    QWidget* parentForMessages() const override { return m_parent; }
    void setParentForMessages(QWidget* widget) override { m_parent = widget; }

    QMessageBox::StandardButton information(const QString& title, const QString& text,
                                            QMessageBox::StandardButtons buttons,
                                            QMessageBox::StandardButton defaultButton) override
    {
        return record(Kind::Information, title, text, buttons, defaultButton);
    }
    QMessageBox::StandardButton question(const QString& title, const QString& text,
                                         QMessageBox::StandardButtons buttons,
                                         QMessageBox::StandardButton defaultButton) override
    {
        return record(Kind::Question, title, text, buttons, defaultButton);
    }
    QMessageBox::StandardButton warning(const QString& title, const QString& text,
                                        QMessageBox::StandardButtons buttons,
                                        QMessageBox::StandardButton defaultButton) override
    {
        return record(Kind::Warning, title, text, buttons, defaultButton);
    }
    QMessageBox::StandardButton critical(const QString& title, const QString& text,
                                         QMessageBox::StandardButtons buttons,
                                         QMessageBox::StandardButton defaultButton) override
    {
        return record(Kind::Critical, title, text, buttons, defaultButton);
    }

    void showWaitCursor(bool disableCurrent) override;
    void restoreCursor() override;

    const QVector<Box>& boxes() const { return m_boxes; }
    // Box texts only, in order.
    QStringList texts() const;

    int waitCursorDepth() const { return m_waitCursorDepth; }

    void clear();

private:
    QMessageBox::StandardButton record(Kind kind, const QString& title, const QString& text,
                                       QMessageBox::StandardButtons buttons,
                                       QMessageBox::StandardButton defaultButton);

    QWidget* m_parent = nullptr;
    QVector<Box> m_boxes;
    int m_waitCursorDepth = 0;
};

} // namespace tavero::test
