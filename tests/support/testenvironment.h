#pragma once

#include <QTemporaryDir>

namespace tavero::test {

// Points HOME and XDG_CONFIG_HOME at a fresh temporary directory for the life of the process, so
// no test reads or writes the real user's settings or autostart entries. Must be created before
// the first QSettings is used.
class TestEnvironment {
public:
    TestEnvironment();

    QString home() const { return m_home.path(); }

    // Removes every stored setting (a fresh user).
    static void clearSettings();
    // Writes `content` to `path` (its folder made first); false when that fails.
    static bool writeFile(const QString& path, const QByteArray& content);
    // The file's bytes; empty when it cannot be read.
    static QByteArray readFile(const QString& path);

private:
    QTemporaryDir m_home;
};

} // namespace tavero::test
