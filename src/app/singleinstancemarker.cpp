#include "app/singleinstancemarker.h"

namespace tavero {

namespace {
// Every build of the client uses this one, so any two copies find each other.
const QString programGuid = QStringLiteral("8c3e5f0a-41d7-4b6e-9a2c-d5f13e7b0c64");

// Holds the semaphore for one scope; the count is given back on every way out.
class SemaphoreHold {
public:
    explicit SemaphoreHold(QSystemSemaphore& semaphore)
        : m_semaphore(semaphore)
        , m_held(semaphore.acquire())
    {}
    ~SemaphoreHold()
    {
        if (m_held)
            m_semaphore.release();
    }
    Q_DISABLE_COPY_MOVE(SemaphoreHold)

private:
    QSystemSemaphore& m_semaphore;
    const bool m_held;
};

// On Unix a segment outlives a copy that crashed: the kernel drops the dead attachment but keeps
// the segment. Attaching and detaching once removes a segment that nobody else is attached to,
// and leaves alone one that a running copy holds.
void releaseAbandonedSegment(const QString& segmentKey)
{
    QSharedMemory probe(segmentKey);
    if (probe.attach(QSharedMemory::ReadOnly))
        probe.detach();
}
} // namespace

SingleInstanceMarker::ProcessData::ProcessData(const QString& key)
    : semaphore(key + QStringLiteral("_semaphore"), 1, QSystemSemaphore::Open)
    , sharedMemory(sharedMemoryName(sharedMemoryName(key)))
{}

SingleInstanceMarker::ProcessData::~ProcessData()
{
    if (sharedMemory.isAttached())
        sharedMemory.detach();
}

QString SingleInstanceMarker::generateGuidedName(const QString& name)
{
    return name + QStringLiteral("_{") + programGuid + QStringLiteral("}");
}

QString SingleInstanceMarker::sharedMemoryName(const QString& key)
{
    return key + QStringLiteral("shared_memory");
}

bool SingleInstanceMarker::check(ProcessData& processData, const QString& key)
{
    Q_UNUSED(key) // the segment's name was derived from it when processData was made
    const SemaphoreHold hold(processData.semaphore);

    if (processData.sharedMemory.isAttached())
        return !processData.holdsMarker;

    releaseAbandonedSegment(processData.sharedMemory.key());
    if (processData.sharedMemory.attach(QSharedMemory::ReadOnly))
        return true;
    // Nobody holds it: claim it. A failed create is not reported; this copy just runs.
    processData.holdsMarker = processData.sharedMemory.create(1, QSharedMemory::ReadOnly);
    return false;
}

bool SingleInstanceMarker::attach(const QString& name)
{
    const QString key = generateGuidedName(name);
    std::shared_ptr<ProcessData>& data = processesDataMap_()[key];
    if (!data)
        data = std::make_shared<ProcessData>(key);
    return check(*data, key);
}

bool SingleInstanceMarker::check(const QString& name)
{
    const QString key = generateGuidedName(name);
    ProcessData data(key);
    return check(data, key);
}

std::map<QString, std::shared_ptr<SingleInstanceMarker::ProcessData>>&
SingleInstanceMarker::processesDataMap_()
{
    static std::map<QString, std::shared_ptr<ProcessData>> map;
    return map;
}

} // namespace tavero
