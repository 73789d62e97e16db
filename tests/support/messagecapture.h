#pragma once

#include <QMutex>
#include <QStringList>
#include <QtGlobal>

namespace tavero::test {

// Collects every message the code under test prints (qDebug, qWarning, qCritical, ...) while it
// lives, instead of letting them reach the test log. One at a time per process.
class MessageCapture {
public:
    MessageCapture();
    MessageCapture(const MessageCapture&) = delete;
    MessageCapture& operator=(const MessageCapture&) = delete;
    ~MessageCapture();

    // Messages of this type so far, in order (any thread).
    QStringList messages(QtMsgType type) const;
    // True when some message of this type starts with `prefix`.
    bool contains(QtMsgType type, const QString& prefix) const;
    int count(QtMsgType type, const QString& prefix) const;
    void clear();

private:
    static void handler(QtMsgType type, const QMessageLogContext& context, const QString& text);

    mutable QMutex m_mutex;
    QList<QPair<QtMsgType, QString>> m_messages;
    QtMessageHandler m_previous = nullptr;
};

} // namespace tavero::test
