#pragma once

#include "platform/iplatform.h"

#include <memory>

namespace tavero {

// Owns the one platform object of the program and lends it out as the interface.
class PlatformInjector {
public:
    // Takes an implementation made elsewhere (tests hand in a scripted platform); must not be null.
    explicit PlatformInjector(std::unique_ptr<IPlatform> platform);
    ~PlatformInjector();

    PlatformInjector(const PlatformInjector&) = delete;
    PlatformInjector& operator=(const PlatformInjector&) = delete;

    IPlatform& platform() const { return *m_platform; }

private:
    std::unique_ptr<IPlatform> m_platform;
};

} // namespace tavero
