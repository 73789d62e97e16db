#pragma once

#include <QString>
#include <QVector>
#include <QtGlobal>
#include <algorithm>
#include <cstdio>

// Helpers the benchmarks share: the median of their samples and a message handler that keeps
// the product's debug lines out of the report, as the product's own handler does.
namespace bench {

inline double median(QVector<double> values)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    const int n = values.size();
    return n % 2 ? values.at(n / 2) : (values.at(n / 2 - 1) + values.at(n / 2)) / 2;
}

inline void dropDebugMessages(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtDebugMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

} // namespace bench
