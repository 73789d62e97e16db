#pragma once

#include "gui/shell/ibublemessageprovider.h"

#include <QString>
#include <QVector>

namespace tavero::test {

// Records every tray bubble instead of showing it.
class FakeBubleMessageProvider : public IBubleMessageProvider {
public:
    struct Bubble {
        QString text;
        QSystemTrayIcon::MessageIcon icon = QSystemTrayIcon::NoIcon;
        int milliseconds = 0;
    };

    void showBubbleMessage(const QString& text, QSystemTrayIcon::MessageIcon icon,
                           int milliseconds) override;

    const QVector<Bubble>& bubbles() const { return m_bubbles; }
    // Texts only, in order, for compact comparisons.
    QStringList texts() const;
    void clear() { m_bubbles.clear(); }

private:
    QVector<Bubble> m_bubbles;
};

} // namespace tavero::test
