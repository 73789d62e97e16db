#include "api/logoutbroadcaster.h"

LogoutBroadcaster::LogoutBroadcaster(QObject* parent)
    : QObject(parent)
{}

void LogoutBroadcaster::emitLogout(const QString& text)
{
    const QMutexLocker locker(&m_mutex);
    emit needLogout(QString(text));
}
