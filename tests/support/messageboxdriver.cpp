#include "support/messageboxdriver.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPushButton>

namespace tavero::test {

namespace {
constexpr int retryDelayMs = 10;
constexpr int maxAttempts = 3000; // 30 s: a busy machine shows boxes late

QString plainText(const QAbstractButton* button)
{
    return button ? button->text().remove(QLatin1Char('&')) : QString();
}
} // namespace

MessageBoxDriver::MessageBoxDriver(QObject* parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &MessageBoxDriver::poll);
}

void MessageBoxDriver::clickOnNextBox(const QString& buttonText)
{
    m_clicks << buttonText;
    if (!m_timer.isActive()) {
        m_attempts = 0;
        m_timer.start(0); // the first look without delay catches a box shown right away
    }
}

void MessageBoxDriver::poll()
{
    if (m_clicks.isEmpty())
        return;
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    // The box answered last may still be on its way out.
    if (!box || (box == m_lastBox && box->isVisible())) {
        if (++m_attempts < maxAttempts) {
            m_timer.start(retryDelayMs);
        } else {
            m_failures
                << QStringLiteral("no message box appeared for \"%1\"").arg(m_clicks.first());
            m_clicks.clear();
        }
        return;
    }
    const QString wanted = m_clicks.takeFirst();
    m_lastBox = box;
    m_attempts = 0;
    SeenBox seen{box->windowTitle(), box->text(), box->icon(), {}, plainText(box->defaultButton())};
    QAbstractButton* target = nullptr;
    for (QAbstractButton* button : box->buttons()) {
        seen.buttons << plainText(button);
        if (!target && seen.buttons.last() == wanted)
            target = button;
    }
    m_seen.append(seen);
    if (target) {
        target->click();
    } else {
        m_failures << QStringLiteral("no button \"%1\" in the box \"%2\" (buttons: %3)")
                          .arg(wanted, seen.text, seen.buttons.join(QStringLiteral(", ")));
        box->reject();
    }
    if (!m_clicks.isEmpty())
        m_timer.start(0);
}

} // namespace tavero::test
