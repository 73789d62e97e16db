#include "platform/platforminjector.h"

#include "platform/nativeplatform.h"

namespace tavero {

PlatformInjector::PlatformInjector()
    : m_platform(std::make_unique<NativePlatform>())
{}

PlatformInjector::PlatformInjector(std::unique_ptr<IPlatform> platform)
    : m_platform(std::move(platform))
{
    Q_ASSERT(m_platform);
}

PlatformInjector::~PlatformInjector() = default;

} // namespace tavero
