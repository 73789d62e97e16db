#pragma once

#include "gui/shell/iviewmanagerutils.h"

#include <QStringList>

namespace tavero::test {

// Records the text of every message box instead of showing it; every box answers NoButton (as a
// box closed without a choice). The wait cursor's nesting is only counted.
class FakeViewManagerUtils : public IViewManagerUtils {
public:
    using Button = QMessageBox::StandardButton;

    QWidget* parentForMessages() const override { return m_parent; }
    void setParentForMessages(QWidget* widget) override { m_parent = widget; }
    Button information(const QString&, const QString& text, QMessageBox::StandardButtons,
                       Button) override
    {
        return record(text);
    }
    Button question(const QString&, const QString& text, QMessageBox::StandardButtons,
                    Button) override
    {
        return record(text);
    }
    Button warning(const QString&, const QString& text, QMessageBox::StandardButtons,
                   Button) override
    {
        return record(text);
    }
    Button critical(const QString&, const QString& text, QMessageBox::StandardButtons,
                    Button) override
    {
        return record(text);
    }
    void showWaitCursor(bool) override { ++m_waitCursorDepth; }
    void restoreCursor() override { m_waitCursorDepth = qMax(0, m_waitCursorDepth - 1); }

    // Box texts, in order.
    const QStringList& texts() const { return m_texts; }
    int waitCursorDepth() const { return m_waitCursorDepth; }
    void clear() { m_texts.clear(); }

private:
    Button record(const QString& text)
    {
        m_texts << text;
        return QMessageBox::NoButton;
    }

    QWidget* m_parent = nullptr;
    QStringList m_texts;
    int m_waitCursorDepth = 0;
};

} // namespace tavero::test
