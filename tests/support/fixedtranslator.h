#pragma once

#include <QHash>
#include <QTranslator>

namespace tavero::test {

// A translator with texts given in code, for tests that need a message's real text (with its
// %1) while the catalogues are not part of the test program. Install it with
// QCoreApplication::installTranslator.
class FixedTranslator : public QTranslator {
public:
    void insert(const QString& context, const QString& key, const QString& text);

    QString translate(const char* context, const char* sourceText, const char* disambiguation,
                      int n) const override;
    bool isEmpty() const override { return m_texts.isEmpty(); }

private:
    QHash<QString, QString> m_texts; // "context\nkey" -> text
};

} // namespace tavero::test
