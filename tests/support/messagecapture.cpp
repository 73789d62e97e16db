#include "support/messagecapture.h"

#include <atomic>

namespace tavero::test {

namespace {
std::atomic<MessageCapture*> current{nullptr};
} // namespace

MessageCapture::MessageCapture()
{
    current = this;
    m_previous = qInstallMessageHandler(&MessageCapture::handler);
}

MessageCapture::~MessageCapture()
{
    qInstallMessageHandler(m_previous);
    current = nullptr;
}

void MessageCapture::handler(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    MessageCapture* capture = current;
    if (!capture)
        return;
    const QMutexLocker locker(&capture->m_mutex);
    capture->m_messages.append({type, text});
}

QStringList MessageCapture::messages(QtMsgType type) const
{
    const QMutexLocker locker(&m_mutex);
    QStringList texts;
    for (const auto& message : m_messages) {
        if (message.first == type)
            texts << message.second;
    }
    return texts;
}

bool MessageCapture::contains(QtMsgType type, const QString& prefix) const
{
    return count(type, prefix) > 0;
}

int MessageCapture::count(QtMsgType type, const QString& prefix) const
{
    int found = 0;
    for (const QString& text : messages(type)) {
        if (text.startsWith(prefix))
            ++found;
    }
    return found;
}

void MessageCapture::clear()
{
    const QMutexLocker locker(&m_mutex);
    m_messages.clear();
}

} // namespace tavero::test
