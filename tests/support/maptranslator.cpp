#include "support/maptranslator.h"

namespace tavero::test {

MapTranslator::MapTranslator(QObject* parent)
    : QTranslator(parent)
{}

MapTranslator& MapTranslator::add(const QString& context, const QString& key, const QString& text)
{
    m_entries.insert({context, key}, text);
    return *this;
}

QString MapTranslator::translate(const char* context, const char* sourceText, const char*,
                                 int) const
{
    // A null string tells the application to ask the next translator (or keep the key).
    return m_entries.value({QString::fromUtf8(context), QString::fromUtf8(sourceText)});
}

} // namespace tavero::test
