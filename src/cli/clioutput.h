#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QString>

class QIODevice;

namespace tavero::cli {

// Where tavero-cli writes. In text mode results and events go to standard output as lines for
// people, errors to standard error; in JSON mode everything, errors included, is one compact JSON
// object per line on standard output. Every line is flushed at once, so a reader sees events as
// they happen.
class CliOutput {
public:
    CliOutput(bool json, QIODevice& out, QIODevice& err);

    bool isJson() const { return m_json; }

    // The outcome of a command: `json` (with "ok": true added unless it says "ok" itself) or
    // `text`.
    void result(QJsonObject json, const QString& text);
    // One time-stamped event of a running connect: `fields` plus "time" and "event", or
    // "<time> <text>".
    void event(const QDateTime& at, const QString& name, QJsonObject fields, const QString& text);
    // A failure: {"ok": false, "error": message, "exitCode": code} or "tavero-cli: message" on
    // standard error.
    void error(const QString& message, int exitCode);
    // A remark for people on standard error (prompts, hints); left out in JSON mode.
    void note(const QString& text);

    // UTC with milliseconds, "2021-01-20T10:00:00.123Z".
    static QString timeStamp(const QDateTime& at);

private:
    void writeLine(QIODevice& device, const QString& line);

    bool m_json;
    QIODevice& m_out;
    QIODevice& m_err;
};

} // namespace tavero::cli
