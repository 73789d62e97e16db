#pragma once

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

class QWidget;

namespace tavero::screenshots {

// Builds the widget to photograph for one state of a page, in the language already installed.
// The widget is shown and grabbed at the size it has when returned.
using ShotProducer = std::function<std::unique_ptr<QWidget>(const QString& state)>;

// Every page and dialog the screenshot tool can render, with the states it knows for each.
class ShotRegistry {
public:
    struct Page {
        QString name;
        QStringList states;
        ShotProducer produce;
    };

    static ShotRegistry& instance();

    // Names are unique; a second registration of a name replaces the first.
    void add(const QString& name, const QStringList& states, ShotProducer produce);
    // In name order.
    const std::vector<Page>& pages() const { return m_pages; }
    const Page* find(const QString& name) const;

private:
    std::vector<Page> m_pages;
};

// Registers a page while the program starts, from the file that knows the page:
//   static const ShotRegistration registration("about", {"default"}, &makeAbout);
struct ShotRegistration {
    ShotRegistration(const QString& name, const QStringList& states, ShotProducer produce);
};

} // namespace tavero::screenshots
