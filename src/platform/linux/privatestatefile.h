#pragma once

#include <QJsonObject>
#include <QString>

namespace tavero {

// The files in which the platform keeps what it changed on the system, so that a start after a
// crash can undo it: JSON, 0600, in a directory only the user can read (0700).
class PrivateStateFile {
public:
    // Replaces the file atomically; an empty object removes it. False when it cannot be written.
    static bool write(const QString& path, const QJsonObject& state);
    // $XDG_STATE_HOME/tavero/`name`, else ~/.local/state/tavero/`name`.
    static QString defaultPath(const QString& name);
};

} // namespace tavero
