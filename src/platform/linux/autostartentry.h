#pragma once

#include <QString>

namespace tavero {

// An XDG autostart desktop entry that starts one program when the user logs on.
class AutostartEntry {
public:
    explicit AutostartEntry(QString filePath);

    QString filePath() const { return m_filePath; }

    // True when the file exists and its Exec key starts `program` (same path, or the same file
    // after resolving links).
    bool pointsAt(const QString& program) const;
    // Writes the entry atomically, creating the directory; false when that fails.
    bool write(const QString& program) const;
    // Removes the entry; true when no entry is left behind.
    bool remove() const;

    // The Exec value that runs `program` without arguments: quoted when the path holds a reserved
    // character, with "%" doubled and the string escapes of the desktop entry format applied.
    static QString execValue(const QString& program);
    // The program of an Exec value (its first argument, unescaped and unquoted); empty when the
    // value is malformed.
    static QString programOf(const QString& execValue);

private:
    QString m_filePath;
};

} // namespace tavero
