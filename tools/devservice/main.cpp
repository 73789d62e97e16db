// tavero-devservice: the local development service (see README.md in this folder).

#include "devservice.h"
#include "devserviceoptions.h"

#include <QCoreApplication>
#include <csignal>
#include <cstdio>
#include <pthread.h>
#include <sys/prctl.h>
#include <unistd.h>

int main(int argc, char** argv)
{
    // SIGINT and SIGTERM are taken by sigwait below; every thread started from here inherits
    // the mask, so none of them is interrupted by the signal itself.
    sigset_t stopSignals;
    sigemptyset(&stopSignals);
    sigaddset(&stopSignals, SIGINT);
    sigaddset(&stopSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    QCoreApplication application(argc, argv); // QProcess runs make-pki

    std::string error;
    bool help = false;
    const auto options = tavero::devservice::DevServiceOptions::parse(argc, argv, error, help);
    if (help) {
        std::fputs(tavero::devservice::DevServiceOptions::usage().c_str(), stdout);
        return 0;
    }
    if (!options) {
        std::fprintf(stderr, "tavero-devservice: %s\n%s", error.c_str(),
                     tavero::devservice::DevServiceOptions::usage().c_str());
        return 2;
    }

    // A test that crashes must not leave its service behind: its death is our SIGTERM.
    if (options->exitWithParent && (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0 || getppid() == 1))
        return 1;

    tavero::devservice::DevService service(*options);
    if (!service.start(error)) {
        std::fprintf(stderr, "tavero-devservice: %s\n", error.c_str());
        service.stop();
        return 1;
    }
    std::printf("%s\n", service.readyLine().c_str());
    std::fflush(stdout);

    int received = 0;
    sigwait(&stopSignals, &received);
    std::fprintf(stderr, "tavero-devservice: stopping (signal %d)\n", received);
    service.stop();
    return 0;
}
