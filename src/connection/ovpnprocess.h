#pragma once

#include <QProcess>

namespace tavero {

// The OpenVPN child process. On Linux the kernel kills it when the client dies, even by SIGKILL,
// so a crashed or killed client leaves no tunnel running; RuntimeDirectory's records cover what
// this cannot (a client on another system, a process started before this request took effect).
// It never shares the client's process group, so signals meant for the client stay with it.
class OvpnProcess : public QProcess {
    Q_OBJECT
public:
    explicit OvpnProcess(QObject* parent = nullptr);

protected:
    void setupChildProcess() override; // runs in the child between fork and exec

private:
    qint64 m_parentPid; // this process, as the child must see it
};

} // namespace tavero
