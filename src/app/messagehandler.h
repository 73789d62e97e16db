#pragma once

#include <QString>
#include <QtGlobal>

namespace tavero {

// The process-wide Qt message handler: info, warning and critical messages go to the system log
// with the matching severity, unchanged; debug and fatal messages go nowhere.
void messageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message);

} // namespace tavero
