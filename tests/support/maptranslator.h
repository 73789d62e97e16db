#pragma once

#include <QHash>
#include <QPair>
#include <QTranslator>

namespace tavero::test {

// A translator built in the test from (context, key) → text entries, for checking that widgets
// translate in the right context and follow language changes without a compiled catalogue.
class MapTranslator : public QTranslator {
public:
    MapTranslator& add(const QString& context, const QString& key, const QString& text)
    {
        m_entries.insert({context, key}, text);
        return *this;
    }

    // A null string tells the application to ask the next translator (or keep the key).
    QString translate(const char* context, const char* sourceText, const char* = nullptr,
                      int = -1) const override
    {
        return m_entries.value({QString::fromUtf8(context), QString::fromUtf8(sourceText)});
    }
    bool isEmpty() const override { return m_entries.isEmpty(); }

private:
    QHash<QPair<QString, QString>, QString> m_entries;
};

} // namespace tavero::test
