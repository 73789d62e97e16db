#include "support/fakeviewmanagerutils.h"

#include <QStringList>

namespace tavero::test {

void FakeViewManagerUtils::showWaitCursor(bool /*disableCurrent*/)
{
    ++m_waitCursorDepth;
}

void FakeViewManagerUtils::restoreCursor()
{
    if (m_waitCursorDepth > 0)
        --m_waitCursorDepth;
}

QStringList FakeViewManagerUtils::texts() const
{
    QStringList result;
    for (const Box& box : m_boxes)
        result << box.text;
    return result;
}

void FakeViewManagerUtils::clear()
{
    m_boxes.clear();
}

QMessageBox::StandardButton FakeViewManagerUtils::record(Kind kind, const QString& title,
                                                         const QString& text,
                                                         QMessageBox::StandardButtons buttons,
                                                         QMessageBox::StandardButton defaultButton)
{
    m_boxes.append({kind, title, text, buttons, defaultButton});
    return QMessageBox::NoButton;
}

} // namespace tavero::test
