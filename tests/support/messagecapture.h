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

    // Messages of this type so far (any thread) that start with `prefix`.
    int count(QtMsgType type, const QString& prefix) const;
    bool contains(QtMsgType type, const QString& prefix) const { return count(type, prefix) > 0; }

private:
    static void handler(QtMsgType type, const QMessageLogContext& context, const QString& text);

    mutable QMutex m_mutex;
    QList<QPair<QtMsgType, QString>> m_messages;
    QtMessageHandler m_previous = nullptr;
};

} // namespace tavero::test
