#include "platform/linux/autostartentry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>
#include <algorithm>

namespace tavero {
namespace {

constexpr char groupHeader[] = "[Desktop Entry]";

// Characters that force an argument into double quotes.
bool isReserved(QChar c)
{
    static const QString reserved = QStringLiteral(" \t\n\"'\\><~|&;$*?#()`");
    return reserved.contains(c);
}

// The "string" value escapes of the format, applied to the whole value.
QString escapeValue(const QString& text)
{
    QString out;
    for (const QChar c : text) {
        if (c == QLatin1Char('\\'))
            out += QLatin1String("\\\\");
        else if (c == QLatin1Char('\n'))
            out += QLatin1String("\\n");
        else if (c == QLatin1Char('\t'))
            out += QLatin1String("\\t");
        else if (c == QLatin1Char('\r'))
            out += QLatin1String("\\r");
        else
            out += c;
    }
    if (out.startsWith(QLatin1Char(' ')))
        out.replace(0, 1, QLatin1String("\\s"));
    return out;
}

QString unescapeValue(const QString& text)
{
    QString out;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c != QLatin1Char('\\') || i + 1 == text.size()) {
            out += c;
            continue;
        }
        const QChar next = text.at(++i);
        switch (next.toLatin1()) {
        case 's':
            out += QLatin1Char(' ');
            break;
        case 'n':
            out += QLatin1Char('\n');
            break;
        case 't':
            out += QLatin1Char('\t');
            break;
        case 'r':
            out += QLatin1Char('\r');
            break;
        default:
            out += next; // "\\" and anything unknown keep the character
        }
    }
    return out;
}

// The value of Exec in the [Desktop Entry] group; a null string when there is none.
QString readExec(const QString& filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QString();
    QTextStream in(&file);
    in.setCodec("UTF-8");
    bool inGroup = false;
    while (!in.atEnd()) {
        const QString line = in.readLine().trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line == QLatin1String(groupHeader);
            continue;
        }
        if (!inGroup || line.startsWith(QLatin1Char('#')))
            continue;
        const int equals = line.indexOf(QLatin1Char('='));
        if (equals > 0 && line.left(equals).trimmed() == QLatin1String("Exec"))
            return line.mid(equals + 1).trimmed();
    }
    return QString();
}

} // namespace

AutostartEntry::AutostartEntry(QString filePath)
    : m_filePath(std::move(filePath))
{}

bool AutostartEntry::pointsAt(const QString& program) const
{
    const QString exec = readExec(m_filePath);
    if (exec.isEmpty() || program.isEmpty())
        return false;
    const QString target = programOf(exec);
    if (target.isEmpty())
        return false;
    if (target == program)
        return true;
    const QString canonicalTarget = QFileInfo(target).canonicalFilePath();
    return !canonicalTarget.isEmpty() && canonicalTarget == QFileInfo(program).canonicalFilePath();
}

bool AutostartEntry::write(const QString& program) const
{
    if (program.isEmpty() || !QDir().mkpath(QFileInfo(m_filePath).absolutePath()))
        return false;
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    QTextStream out(&file);
    out.setCodec("UTF-8");
    out << groupHeader << '\n'
        << "Type=Application\n"
        << "Name=TAVERO\n"
        << "Comment=Connects to the VPN when you log on\n"
        << "Exec=" << execValue(program) << '\n'
        << "Terminal=false\n"
        << "X-GNOME-Autostart-enabled=true\n";
    out.flush();
    return out.status() == QTextStream::Ok && file.commit();
}

bool AutostartEntry::remove() const
{
    return QFile::remove(m_filePath) || !QFileInfo::exists(m_filePath);
}

QString AutostartEntry::execValue(const QString& program)
{
    QString argument = program;
    argument.replace(QLatin1Char('%'), QLatin1String("%%"));
    if (std::any_of(argument.cbegin(), argument.cend(), isReserved)) {
        QString quoted(QLatin1Char('"'));
        for (const QChar c : qAsConst(argument)) {
            if (c == QLatin1Char('"') || c == QLatin1Char('`') || c == QLatin1Char('$') ||
                c == QLatin1Char('\\'))
                quoted += QLatin1Char('\\');
            quoted += c;
        }
        argument = quoted + QLatin1Char('"');
    }
    return escapeValue(argument);
}

QString AutostartEntry::programOf(const QString& execValue)
{
    const QString command = unescapeValue(execValue);
    QString program;
    int i = 0;
    if (command.startsWith(QLatin1Char('"'))) {
        for (i = 1; i < command.size(); ++i) {
            const QChar c = command.at(i);
            if (c == QLatin1Char('"'))
                break;
            if (c == QLatin1Char('\\') && i + 1 < command.size())
                program += command.at(++i);
            else
                program += c;
        }
        if (i >= command.size())
            return QString(); // no closing quote
    } else {
        for (; i < command.size() && command.at(i) != QLatin1Char(' ') &&
               command.at(i) != QLatin1Char('\t');
             ++i)
            program += command.at(i);
    }
    return program.replace(QLatin1String("%%"), QLatin1String("%"));
}

} // namespace tavero
