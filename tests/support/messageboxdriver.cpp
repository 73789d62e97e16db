#include "support/messageboxdriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPushButton>
#include <QTimer>

namespace tavero::test {

namespace {
// Polling the first time with no delay catches a box shown right away; later attempts wait a
// little so that a slow box does not turn the test into a busy loop.
constexpr int retryDelayMs = 10;
constexpr int maxAttempts = 3000; // 30 s: a busy machine shows boxes late
} // namespace

MessageBoxDriver::MessageBoxDriver(QObject* parent)
    : QObject(parent)
{}

MessageBoxDriver::~MessageBoxDriver() = default;

void MessageBoxDriver::clickOnNextBox(const QString& buttonText)
{
    m_clicks.enqueue(buttonText);
    if (!m_armed) {
        m_attempts = 0;
        arm(0);
    }
}

QString MessageBoxDriver::plainText(const QString& buttonText)
{
    QString text = buttonText;
    text.remove(QLatin1Char('&'));
    return text;
}

void MessageBoxDriver::arm(int delayMs)
{
    m_armed = true;
    QTimer::singleShot(delayMs, this, &MessageBoxDriver::poll);
}

void MessageBoxDriver::poll()
{
    m_armed = false;
    if (m_clicks.isEmpty())
        return;

    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    // The box we answered last may still be on its way out.
    if (!box || (box == m_lastBox && box->isVisible())) {
        if (++m_attempts < maxAttempts) {
            arm(retryDelayMs);
        } else {
            m_failures << QStringLiteral("no message box appeared for \"%1\"").arg(m_clicks.head());
            m_clicks.clear();
        }
        return;
    }

    const QString wanted = m_clicks.dequeue();
    m_lastBox = box;
    m_attempts = 0;

    SeenBox seen;
    seen.title = box->windowTitle();
    seen.text = box->text();
    seen.icon = box->icon();
    if (box->defaultButton())
        seen.defaultButton = plainText(box->defaultButton()->text());
    QAbstractButton* target = nullptr;
    const QList<QAbstractButton*> buttons = box->buttons();
    for (QAbstractButton* button : buttons) {
        const QString text = plainText(button->text());
        seen.buttons << text;
        if (!target && text == wanted)
            target = button;
    }

    if (target) {
        seen.clicked = wanted;
        m_seen.append(seen);
        target->click();
    } else {
        m_failures << QStringLiteral("no button \"%1\" in the box \"%2\" (buttons: %3)")
                          .arg(wanted, seen.text, seen.buttons.join(QStringLiteral(", ")));
        m_seen.append(seen);
        box->reject();
    }

    if (!m_clicks.isEmpty())
        arm(0);
}

} // namespace tavero::test
