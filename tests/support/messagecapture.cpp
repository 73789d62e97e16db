#include "support/messagecapture.h"

#include <algorithm>
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

int MessageCapture::count(QtMsgType type, const QString& prefix) const
{
    const QMutexLocker locker(&m_mutex);
    return int(std::count_if(m_messages.begin(), m_messages.end(), [&](const auto& message) {
        return message.first == type && message.second.startsWith(prefix);
    }));
}

} // namespace tavero::test
