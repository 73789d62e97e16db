#include "platform/platforminjector.h"


namespace tavero {

PlatformInjector::PlatformInjector(std::unique_ptr<IPlatform> platform)
    : m_platform(std::move(platform))
{
    Q_ASSERT(m_platform);
}

PlatformInjector::~PlatformInjector() = default;

} // namespace tavero
