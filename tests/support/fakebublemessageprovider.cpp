#include "support/fakebublemessageprovider.h"

#include <QStringList>

namespace tavero::test {

void FakeBubleMessageProvider::showBubbleMessage(const QString& text,
                                                 QSystemTrayIcon::MessageIcon icon,
                                                 int milliseconds)
{
    m_bubbles.append({text, icon, milliseconds});
}

QStringList FakeBubleMessageProvider::texts() const
{
    QStringList result;
    for (const Bubble& bubble : m_bubbles)
        result << bubble.text;
    return result;
}

} // namespace tavero::test
