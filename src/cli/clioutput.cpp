#include "cli/clioutput.h"

#include <QFileDevice>
#include <QIODevice>
#include <QJsonDocument>

namespace tavero::cli {

CliOutput::CliOutput(bool json, QIODevice& out, QIODevice& err)
    : m_json(json)
    , m_out(out)
    , m_err(err)
{}

void CliOutput::result(QJsonObject json, const QString& text)
{
    if (m_json) {
        if (!json.contains(QStringLiteral("ok")))
            json.insert(QStringLiteral("ok"), true);
        writeLine(m_out, QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact)));
    } else if (!text.isEmpty()) {
        writeLine(m_out, text);
    }
}

void CliOutput::event(const QDateTime& at, const QString& name, QJsonObject fields,
                      const QString& text)
{
    if (m_json) {
        fields.insert(QStringLiteral("time"), timeStamp(at));
        fields.insert(QStringLiteral("event"), name);
        writeLine(m_out, QString::fromUtf8(QJsonDocument(fields).toJson(QJsonDocument::Compact)));
    } else {
        writeLine(m_out, timeStamp(at) + QLatin1Char(' ') + text);
    }
}

void CliOutput::error(const QString& message, int exitCode)
{
    if (m_json) {
        const QJsonObject json{{QStringLiteral("ok"), false},
                               {QStringLiteral("error"), message},
                               {QStringLiteral("exitCode"), exitCode}};
        writeLine(m_out, QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact)));
    } else {
        writeLine(m_err, QStringLiteral("tavero-cli: ") + message);
    }
}

void CliOutput::note(const QString& text)
{
    if (!m_json)
        writeLine(m_err, text);
}

QString CliOutput::timeStamp(const QDateTime& at)
{
    return at.toUTC().toString(Qt::ISODateWithMs);
}

void CliOutput::writeLine(QIODevice& device, const QString& line)
{
    QByteArray bytes = line.toUtf8();
    if (!bytes.endsWith('\n'))
        bytes.append('\n');
    device.write(bytes);
    if (auto* file = qobject_cast<QFileDevice*>(&device))
        file->flush();
}

} // namespace tavero::cli
