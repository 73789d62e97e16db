#include "support/fixedtranslator.h"

namespace tavero::test {

void FixedTranslator::insert(const QString& context, const QString& key, const QString& text) {
    m_texts.insert(context + QLatin1Char('\n') + key, text);
}

QString FixedTranslator::translate(const char* context, const char* sourceText,
                                   const char* /*disambiguation*/, int /*n*/) const {
    return m_texts.value(QString::fromUtf8(context) + QLatin1Char('\n') +
                         QString::fromUtf8(sourceText));
}

} // namespace tavero::test
