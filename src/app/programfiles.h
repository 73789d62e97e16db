#pragma once

#include <QString>

namespace tavero {

// Where the client's files lie. In the build tree everything sits beside the executables; an
// installation puts tavero and tavero-cli in <prefix>/bin and their companions (UpdateRunner,
// bin/openvpn) in <prefix>/lib/tavero, where the files that users do not start themselves belong.
class ProgramFiles {
public:
    // The folder of tavero and tavero-cli.
    static QString programDirectory();
    // The folder of UpdateRunner and of bin/openvpn.
    static QString companionDirectory();

    // The same answers for a process whose executable lies in `executableDirectory`.
    static QString programDirectory(const QString& executableDirectory);
    static QString companionDirectory(const QString& executableDirectory);
};

} // namespace tavero
