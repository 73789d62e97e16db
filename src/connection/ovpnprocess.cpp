#include "connection/ovpnprocess.h"

#include <QCoreApplication>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

#ifdef Q_OS_LINUX
#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>
#endif

namespace tavero {

OvpnProcess::OvpnProcess(QObject* parent)
    : QProcess(parent)
    , m_parentPid(QCoreApplication::applicationPid())
{
#ifdef Q_OS_WIN
    // As on Linux: a console's Ctrl-C or Ctrl-Break reaches the client only.
    setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments* arguments) {
        arguments->flags |= CREATE_NEW_PROCESS_GROUP;
    });
#endif
}

void OvpnProcess::setupChildProcess()
{
#ifdef Q_OS_LINUX
    // Only async-signal-safe calls here. A parent that died before the request is caught by
    // comparing with the pid noted before the fork.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != pid_t(m_parentPid))
        ::_exit(1);
    // A session of its own: a signal to the client's process group (Ctrl-C in a terminal, the
    // end of a login session) reaches the client alone, which then takes the tunnel down in
    // order. Sharing the group, openvpn died first and the client saw a broken tunnel, which it
    // re-established (or, with the kill switch on, cut the network for) on its way out.
    ::setsid();
#endif
}

} // namespace tavero
