#pragma once

#include <QString>
#include <QtGlobal>
#include <map>
#include <memory>

class QLockFile;

namespace tavero {

// The marker by which one running copy of a program makes itself known to the next: an exclusive
// lock on a file in the user's settings folder. Copies of any privilege see it, since a root copy
// makes the file as the user (UserFileAccess) and the lock is taken on an open file that both can
// open; copies started at the same moment cannot both take it, and the system drops the lock of a
// copy that crashed. The widget-free half of the launch check; ProgramLaunchChecker adds the boxes.
class SingleInstanceMarker {
public:
    // The lock file of one key, opened on first use.
    struct ProcessData {
        explicit ProcessData(const QString& key);
        ~ProcessData(); // closing the file gives up the lock
        Q_DISABLE_COPY_MOVE(ProcessData)

        QString path; // <settings folder>/<key>.lock
        int fd = -1;  // open while this copy holds the marker or has tested it
#ifndef Q_OS_UNIX
        std::unique_ptr<QLockFile> lockFile;
#endif
        bool holdsMarker = false; // this process took the lock
    };

    // name + "_{<fixed GUID>}".
    static QString generateGuidedName(const QString& name);
    // The lock file of `key` in the user's settings folder.
    static QString lockFilePath(const QString& key);

    // True when another copy holds the marker of `key`. Otherwise takes it, held by `processData`
    // from then on; asked again, it answers whether the holder is another copy. A file that cannot
    // be made (no writable settings folder) is not reported: the answer is false.
    static bool check(ProcessData& processData, const QString& key);
    // The launch check proper: after a false answer this copy holds the marker of `name` until it
    // exits.
    static bool attach(const QString& name);
    // Whether a copy holds the marker of `name` (this one included, once it attached), without
    // claiming it.
    static bool check(const QString& name);

protected:
    // Key → the data of this process; entries live until the process exits, keeping its marker.
    static std::map<QString, std::shared_ptr<ProcessData>>& processesDataMap_();
};

} // namespace tavero
