#include "connection/eventwait.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>

namespace tavero {

void processEventsFor(int totalMs, int sliceMs, const std::function<bool()>& done)
{
    QElapsedTimer elapsed;
    elapsed.start();
    for (;;) {
        const qint64 remaining = totalMs - elapsed.elapsed();
        if (remaining <= 0 || (done && done()))
            return;
        QEventLoop slice;
        QTimer::singleShot(int(std::min<qint64>(remaining, sliceMs)), &slice, &QEventLoop::quit);
        slice.exec();
    }
}

} // namespace tavero
