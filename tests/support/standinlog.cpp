#include "support/standinlog.h"

#include <QFile>
#include <QJsonDocument>
#include <csignal>

namespace tavero::test {

StandInLog::StandInLog()
{
    qputenv("TAVERO_FAKE_OPENVPN_LOG", m_dir.filePath(QStringLiteral("starts.jsonl")).toUtf8());
}

StandInLog::~StandInLog()
{
    for (qint64 pid : live())
        ::kill(pid_t(pid), SIGKILL);
    qunsetenv("TAVERO_FAKE_OPENVPN_LOG");
}

QVector<StandInLog::Start> StandInLog::starts() const
{
    QVector<Start> result;
    QFile file(m_dir.filePath(QStringLiteral("starts.jsonl")));
    if (!file.open(QIODevice::ReadOnly))
        return result;
    while (!file.atEnd()) {
        const QJsonObject line = QJsonDocument::fromJson(file.readLine()).object();
        if (!line.isEmpty())
            result.append({line.value(QLatin1String("pid")).toVariant().toLongLong(),
                           line.value(QLatin1String("config")).toString(), line});
    }
    return result;
}

bool StandInLog::isRunning(qint64 pid)
{
    QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!stat.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = stat.readAll();
    const int close = text.lastIndexOf(')');
    return close > 0 && text.size() > close + 2 && text.at(close + 2) != 'Z';
}

QVector<qint64> StandInLog::live() const
{
    QVector<qint64> pids;
    for (const Start& start : starts()) {
        if (isRunning(start.pid) && !pids.contains(start.pid))
            pids << start.pid;
    }
    return pids;
}

QStringList StandInLog::leftoverConfigs() const
{
    QStringList files;
    for (const Start& start : starts()) {
        if (QFile::exists(start.config) && !isRunning(start.pid) && !files.contains(start.config))
            files << start.config;
    }
    return files;
}

} // namespace tavero::test
