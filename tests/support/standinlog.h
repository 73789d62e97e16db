#pragma once

#include <QJsonObject>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

namespace tavero::test {

// Reads the OpenVPN stand-in's start log (TAVERO_FAKE_OPENVPN_LOG, which the constructor points
// at a file of its own for this process and its children): which stand-ins were started, which
// still run, which configuration files outlived theirs. Stand-ins still running die with it.
class StandInLog {
public:
    struct Start {
        qint64 pid = 0;
        QString config;
        QJsonObject entry; // also cwd, mode (octal text) and text of the configuration
    };

    StandInLog();
    ~StandInLog();
    StandInLog(const StandInLog&) = delete;
    StandInLog& operator=(const StandInLog&) = delete;

    QVector<Start> starts() const;
    // Stand-ins of the log that still run (zombies do not count).
    QVector<qint64> live() const;
    // Configuration files that outlived their stand-in.
    QStringList leftoverConfigs() const;

    static bool isRunning(qint64 pid);

private:
    QTemporaryDir m_dir;
};

} // namespace tavero::test
