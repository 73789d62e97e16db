#include "platform/linux/privatestatefile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <sys/stat.h>

namespace tavero {

QString PrivateStateFile::defaultPath(const QString& name)
{
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.local/state");
    return base + QStringLiteral("/tavero/") + name;
}

bool PrivateStateFile::write(const QString& path, const QJsonObject& state)
{
    if (state.isEmpty())
        return QFile::remove(path) || !QFile::exists(path);
    const QFileInfo info(path);
    if (!QDir().mkpath(info.absolutePath()))
        return false;
    ::chmod(QFile::encodeName(info.absolutePath()).constData(), 0700);
    QSaveFile file(info.absoluteFilePath());
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.write(QJsonDocument(state).toJson(QJsonDocument::Compact));
    return file.commit();
}

} // namespace tavero
