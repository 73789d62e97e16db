#pragma once

#include "app/programassembly.h"

#include <QString>
#include <QTemporaryDir>

namespace tavero::test {

class DevService;

// What the assembled client needs to run against a development service: the service's addresses
// in the environment, the OpenVPN stand-in as bin/openvpn of a program directory of its own, its
// tunnel pointed at the service, and the administrator and remote-desktop answers forced (yes,
// no). options() then gives assembly options with a scripted platform (the network switch and the
// dial-up protocols never reach the machine), that program directory, a launch-check name no
// running client uses, and `markerDirectory` for "fr.txt".
class ClientStand {
public:
    // `standIn` is the built tavero-fake-openvpn.
    ClientStand(const DevService& service, const QString& standIn);

    bool isReady() const { return m_error.isEmpty(); }
    QString errorText() const { return m_error; }

    ProgramAssembly::Options options(const QString& markerDirectory);

private:
    QTemporaryDir m_programDir;
    QString m_error;
    int m_launches = 0;
};

} // namespace tavero::test
