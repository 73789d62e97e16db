#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace tavero::test {

// A network namespace made by a test with `ip netns add` under the name "<prefix>-<pid>". It is
// removed when the object dies, at process exit and on a fatal signal; namespaces of earlier test
// processes that no longer run (killed on a time-out) are removed when the next one is made.
// Code runs inside it on a dedicated thread that has entered it with setns(2), so nothing the
// code does can reach the host's own interfaces.
class NetworkNamespace {
public:
    explicit NetworkNamespace(const QString& prefix);
    ~NetworkNamespace();

    NetworkNamespace(const NetworkNamespace&) = delete;
    NetworkNamespace& operator=(const NetworkNamespace&) = delete;

    // Why a test of this kind cannot run here (not root, no `ip netns`); empty when it can.
    static QString unavailableReason();

    // Empty when the namespace exists; otherwise why it could not be made.
    QString error() const { return m_error; }
    QString name() const { return m_name; }

    // Runs `ip -n <name> <arguments>`; true on exit status 0. Standard output goes to `output`.
    bool ip(const QStringList& arguments, QString* output = nullptr) const;
    // Runs `ip <arguments>` in the host namespace, for reading only (the test compares the host's
    // interfaces before and after).
    static bool hostIp(const QStringList& arguments, QString* output);

    // Runs `function` on a new thread inside the namespace and waits for it. The thread first
    // checks that it really is in this namespace and not in the host's; when it is not, `function`
    // is not run and the answer is false.
    bool run(const std::function<void()>& function) const;

private:
    void remove();

    QString m_name;
    QString m_error;
    bool m_made = false;
};

} // namespace tavero::test
