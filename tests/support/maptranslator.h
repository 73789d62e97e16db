#pragma once

#include <QHash>
#include <QPair>
#include <QTranslator>

namespace tavero::test {

// A translator built in the test from (context, key) → text entries, for checking that widgets
// translate in the right context and follow language changes without a compiled catalogue.
class MapTranslator : public QTranslator {
public:
    explicit MapTranslator(QObject* parent = nullptr);

    MapTranslator& add(const QString& context, const QString& key, const QString& text);

    QString translate(const char* context, const char* sourceText,
                      const char* disambiguation = nullptr, int n = -1) const override;
    bool isEmpty() const override { return m_entries.isEmpty(); }

private:
    QHash<QPair<QString, QString>, QString> m_entries;
};

} // namespace tavero::test
