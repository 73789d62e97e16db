#pragma once

#include <QString>
#include <QStringList>
#include <functional>

class QWidget;

namespace tavero::sessionshots {

// Drives one session of the assembled client and writes a picture after every step:
// <out>/<nn>-<step>-<language>.png. The session starts in `language` and switches to
// `changeTo` at the language step.
class SessionDriver {
public:
    SessionDriver(QString outDirectory, QString language, QString changeTo);

    // False with errorText() when a step did not reach the state it should have.
    bool run();
    QString errorText() const { return m_error; }
    QStringList written() const { return m_written; }

private:
    void save(QWidget* widget, const QString& step);
    // Runs `open` (which shows a modal window); once the modal window is up, saves it as `step`
    // and then runs `close` on it.
    void whileModal(const std::function<void()>& open, const QString& step,
                    const std::function<void(QWidget*)>& close);
    bool fail(const QString& text);

    QString m_out;
    QString m_language;
    QString m_changeTo;
    QString m_error;
    QStringList m_written;
    int m_step = 0;
};

} // namespace tavero::sessionshots
