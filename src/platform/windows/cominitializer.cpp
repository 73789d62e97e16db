#include "platform/windows/cominitializer.h"

#include <objbase.h>

namespace tavero {

ComInitializer::ComInitializer()
    : m_initialized(SUCCEEDED(CoInitialize(nullptr)))
{}

ComInitializer::~ComInitializer()
{
    if (m_initialized)
        CoUninitialize();
}

} // namespace tavero
