#include "support/pagetexts.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTreeWidget>

namespace tavero::test {

QStringList visibleTexts(const QWidget& page)
{
    QStringList texts{page.windowTitle()};
    for (const QLabel* label : page.findChildren<QLabel*>())
        texts << label->text();
    for (const QAbstractButton* button : page.findChildren<QAbstractButton*>())
        texts << button->text();
    for (const QLineEdit* field : page.findChildren<QLineEdit*>())
        texts << field->placeholderText();
    for (const QTreeWidget* tree : page.findChildren<QTreeWidget*>()) {
        for (int row = 0; row < tree->topLevelItemCount(); ++row) {
            for (int column = 0; column < tree->columnCount(); ++column)
                texts << tree->topLevelItem(row)->text(column);
        }
    }
    texts.removeAll(QString());
    return texts;
}

QStringList untranslatedKeys(const QStringList& texts)
{
    static const QRegularExpression key(
        QStringLiteral("\\b(label|action|title|message|warning|body)\\.[a-z_]+"));
    QStringList keys;
    for (const QString& text : texts) {
        if (key.match(text).hasMatch())
            keys << text;
    }
    return keys;
}

} // namespace tavero::test
