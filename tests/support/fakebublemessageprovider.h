#pragma once

#include "gui/shell/ibublemessageprovider.h"

#include <QStringList>

namespace tavero::test {

// Records the text of every tray bubble instead of showing it.
class FakeBubleMessageProvider : public IBubleMessageProvider {
public:
    void showBubbleMessage(const QString& text, QSystemTrayIcon::MessageIcon, int) override
    {
        m_texts << text;
    }

    const QStringList& texts() const { return m_texts; }
    void clear() { m_texts.clear(); }

private:
    QStringList m_texts;
};

} // namespace tavero::test
