#include "connection/ovpnprocess.h"

#include <QCoreApplication>

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#endif

namespace tavero {

OvpnProcess::OvpnProcess(QObject* parent)
    : QProcess(parent)
    , m_parentPid(QCoreApplication::applicationPid())
{}

void OvpnProcess::setupChildProcess()
{
#ifdef Q_OS_LINUX
    // Only async-signal-safe calls here. A parent that died before the request is caught by
    // comparing with the pid noted before the fork.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != pid_t(m_parentPid))
        ::_exit(1);
#endif
}

} // namespace tavero
