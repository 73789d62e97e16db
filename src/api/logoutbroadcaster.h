#pragma once

#include <QMutex>
#include <QObject>

// Thread-safe source of the forced log-out: raised when the access token can no longer be renewed.
class LogoutBroadcaster : public QObject {
    Q_OBJECT
public:
    explicit LogoutBroadcaster(QObject* parent = nullptr);

    void emitLogout(const QString& text);

signals:
    void needLogout(QString errorText);

private:
    QMutex m_mutex;
};
