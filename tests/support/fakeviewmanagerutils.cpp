#include "support/fakeviewmanagerutils.h"

#include <QStringList>
#include <QtGlobal>
#include <algorithm>

namespace tavero::test {

void FakeViewManagerUtils::showWaitCursor(bool disableCurrent)
{
    ++m_waitCursorDepth;
    m_maxWaitCursorDepth = std::max(m_maxWaitCursorDepth, m_waitCursorDepth);
    if (disableCurrent)
        ++m_disablingWaitCursors;
}

void FakeViewManagerUtils::restoreCursor()
{
    if (m_waitCursorDepth > 0)
        --m_waitCursorDepth;
}

void FakeViewManagerUtils::enqueueAnswer(QMessageBox::StandardButton answer)
{
    if (answer == QMessageBox::Yes || answer == QMessageBox::No)
        qFatal("FakeViewManagerUtils: the real boxes answer Ok/Cancel for yes/no, script those");
    m_answers.enqueue(answer);
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
    m_answers.clear();
    m_boxes.clear();
    m_unanswered = 0;
    m_maxWaitCursorDepth = m_waitCursorDepth;
    m_disablingWaitCursors = 0;
}

QMessageBox::StandardButton FakeViewManagerUtils::record(Kind kind, const QString& title,
                                                         const QString& text,
                                                         QMessageBox::StandardButtons buttons,
                                                         QMessageBox::StandardButton defaultButton)
{
    QMessageBox::StandardButton answer = QMessageBox::NoButton;
    if (m_answers.isEmpty())
        ++m_unanswered;
    else
        answer = m_answers.dequeue();
    m_boxes.append({kind, title, text, buttons, defaultButton, answer});
    return answer;
}

} // namespace tavero::test
