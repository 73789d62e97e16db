#pragma once

#include <QString>
#include <QtGlobal>

namespace tavero {

// The client's private directory for what lives only while it runs: the OpenVPN configuration
// files (they hold the private key) and one record per running openvpn, so that nothing a killed
// client leaves behind escapes the next start. It is $XDG_RUNTIME_DIR/tavero, or
// <user cache>/tavero/run when XDG_RUNTIME_DIR is unset; the directory is 0700, its files 0600.
//
// Every entry starts with its owner's tag, "<pid>-<start time>-", so a start removes only what a
// process that no longer runs left behind, never the files of a client or test running beside it.
// Linux reads process identities from /proc; elsewhere no leftover is recognised.
class RuntimeDirectory {
public:
    // The directory, created on first use and made private; empty when that is impossible (a
    // directory of another user, a symbolic link).
    static QString path();

    // "<pid>-<start time>" of this process: the prefix of every entry it places in path().
    static QString ownerTag();
    // True while the process that ownerTag() named as `tag` still runs (on other systems: always).
    static bool ownerRuns(const QString& tag);

    // Notes that `pid` runs OpenVPN on `configPath` for this process, as entry `name` (which
    // starts with ownerTag()); forgetProcess removes the note once the process has ended.
    static bool recordProcess(const QString& name, qint64 pid, const QString& configPath);
    static void forgetProcess(const QString& name);

    // For every owner that no longer runs: kills each recorded openvpn that still runs on the
    // recorded configuration (a pid since taken by another program is left alone), waits a
    // bounded time for it to end, and removes the owner's entries. Returns the number of
    // processes it stopped. Called once at start by the graphical client and by tavero-cli.
    static int removeLeftovers();
};

} // namespace tavero
