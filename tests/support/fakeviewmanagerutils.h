#pragma once

#include "gui/shell/iviewmanagerutils.h"

#include <QQueue>
#include <QVector>

namespace tavero::test {

// Records every message box instead of showing it and answers from a queue of scripted answers.
// Script the answers the real boxes give: Ok for the yes button and Cancel for the no button,
// never Yes or No (enqueueing those fails loudly). A box with no answer left returns NoButton and
// counts in unansweredBoxes(). The wait cursor is only counted.
class FakeViewManagerUtils : public IViewManagerUtils {
public:
    enum class Kind { Information, Question, Warning, Critical };

    struct Box {
        Kind kind = Kind::Information;
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons;
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
        QMessageBox::StandardButton answer = QMessageBox::NoButton;
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

    void enqueueAnswer(QMessageBox::StandardButton answer);
    int pendingAnswers() const { return m_answers.size(); }

    const QVector<Box>& boxes() const { return m_boxes; }
    // Box texts only, in order.
    QStringList texts() const;
    int unansweredBoxes() const { return m_unanswered; }

    int waitCursorDepth() const { return m_waitCursorDepth; }
    // Highest nesting reached and how many pushes asked to disable the current page.
    int maxWaitCursorDepth() const { return m_maxWaitCursorDepth; }
    int disablingWaitCursors() const { return m_disablingWaitCursors; }

    void clear();

private:
    QMessageBox::StandardButton record(Kind kind, const QString& title, const QString& text,
                                       QMessageBox::StandardButtons buttons,
                                       QMessageBox::StandardButton defaultButton);

    QWidget* m_parent = nullptr;
    QQueue<QMessageBox::StandardButton> m_answers;
    QVector<Box> m_boxes;
    int m_unanswered = 0;
    int m_waitCursorDepth = 0;
    int m_maxWaitCursorDepth = 0;
    int m_disablingWaitCursors = 0;
};

} // namespace tavero::test
