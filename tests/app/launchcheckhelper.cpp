// A stand-in for a second copy of the client in the launch-check tests: claims the marker of the
// name it is given and answers on its standard streams.
//   launchcheckhelper <name>
// Prints "refused" and exits with 1 when another copy holds the marker; otherwise prints
// "running" and then answers each line of its standard input: "check" → "held" or "free"
// (SingleInstanceMarker::check), "exit" or the end of input → exits with 0.
#include "app/singleinstancemarker.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2)
        return 2;
    const QString name = arguments.at(1);

    QTextStream out(stdout);
    if (tavero::SingleInstanceMarker::attach(name)) {
        out << "refused" << Qt::endl;
        return 1;
    }
    out << "running" << Qt::endl;

    QTextStream in(stdin);
    QString line;
    while (in.readLineInto(&line)) {
        if (line == QLatin1String("check"))
            out << (tavero::SingleInstanceMarker::check(name) ? "held" : "free") << Qt::endl;
        else if (line == QLatin1String("exit"))
            break;
    }
    return 0;
}
