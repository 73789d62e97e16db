#pragma once

#include <QStringList>

class QWidget;

namespace tavero::test {

// Every text a user can see on a page: its window title, labels, buttons, field placeholders and
// the cells of its tree lists. Empty texts are left out.
QStringList visibleTexts(const QWidget& page);

// The texts that still contain a message key ("label.x", "warning.y", ...): what reaches the
// screen untranslated when code and catalogue disagree about a context or a key.
QStringList untranslatedKeys(const QStringList& texts);

} // namespace tavero::test
