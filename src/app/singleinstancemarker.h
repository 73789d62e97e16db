#pragma once

#include <QSharedMemory>
#include <QString>
#include <QSystemSemaphore>
#include <map>
#include <memory>

namespace tavero {

// The marker by which one running copy of a program makes itself known to the next: a one-byte
// named shared-memory segment, tested and created under a named system semaphore so that copies
// started at the same moment cannot both miss each other. The widget-free half of the launch
// check; ProgramLaunchChecker adds the boxes.
class SingleInstanceMarker {
public:
    // The semaphore and the segment handle of one key.
    struct ProcessData {
        explicit ProcessData(const QString& key);
        ~ProcessData(); // detaches; the system drops the segment with its last attachment
        Q_DISABLE_COPY_MOVE(ProcessData)

        QSystemSemaphore semaphore; // key + "_semaphore", count 1, opened or created
        QSharedMemory sharedMemory; // key + "shared_memory" twice, not attached at first
        bool holdsMarker = false;   // this process created the segment
    };

    // name + "_{<fixed GUID>}".
    static QString generateGuidedName(const QString& name);
    // key + "shared_memory".
    static QString sharedMemoryName(const QString& key);

    // True when another copy holds the marker of `key`. Otherwise creates it, held by
    // `processData` from then on. Either way `processData` stays attached; asked again, it
    // answers whether the holder is another copy. A segment left behind by a copy that crashed
    // is released first, so it never blocks a start.
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
