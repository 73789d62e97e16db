#include "shotregistry.h"

#include <algorithm>

namespace tavero::screenshots {

ShotRegistry& ShotRegistry::instance()
{
    static ShotRegistry registry;
    return registry;
}

void ShotRegistry::add(const QString& name, const QStringList& states, ShotProducer produce)
{
    auto it = std::find_if(m_pages.begin(), m_pages.end(),
                           [&](const Page& page) { return page.name == name; });
    if (it != m_pages.end()) {
        *it = Page{name, states, std::move(produce)};
        return;
    }
    const auto position = std::lower_bound(
        m_pages.begin(), m_pages.end(), name,
        [](const Page& page, const QString& wanted) { return page.name < wanted; });
    m_pages.insert(position, Page{name, states, std::move(produce)});
}

const ShotRegistry::Page* ShotRegistry::find(const QString& name) const
{
    for (const Page& page : m_pages) {
        if (page.name == name)
            return &page;
    }
    return nullptr;
}

ShotRegistration::ShotRegistration(const QString& name, const QStringList& states,
                                   ShotProducer produce)
{
    ShotRegistry::instance().add(name, states, std::move(produce));
}

} // namespace tavero::screenshots
