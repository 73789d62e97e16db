#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QVector>

namespace tavero::test {

// Answers real modal message boxes in tests. Queue one button text per box you expect, then run
// the code that shows the boxes: from the event loop of each modal box, the driver finds the
// active modal QMessageBox, records what it shows and clicks the button with that text
// (mnemonic ampersands ignored). A box without such a button is recorded in failures() and
// rejected, so a test never hangs on it; so is a box that does not appear within 30 s.
class MessageBoxDriver : public QObject {
    Q_OBJECT

public:
    struct SeenBox {
        QString title;
        QString text;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QStringList buttons; // button texts without ampersands
        QString defaultButton;
    };

    explicit MessageBoxDriver(QObject* parent = nullptr);

    void clickOnNextBox(const QString& buttonText);

    const QVector<SeenBox>& seen() const { return m_seen; }
    const QStringList& failures() const { return m_failures; }

private:
    void poll();

    QTimer m_timer;
    QStringList m_clicks;
    QVector<SeenBox> m_seen;
    QStringList m_failures;
    QPointer<QMessageBox> m_lastBox;
    int m_attempts = 0;
};

} // namespace tavero::test
