#pragma once

// One name for the platform implementation this build runs on, so that callers of its static
// helpers (administrator test, elevation, remote-desktop listener, adapter lookup) stay portable.
#include <QtGlobal>

#if defined(Q_OS_WIN)
#include "platform/windows/windowsplatform.h"
namespace tavero {
using NativePlatform = WindowsPlatform;
}
#else
#include "platform/linux/linuxplatform.h"
namespace tavero {
using NativePlatform = LinuxPlatform;
}
#endif
