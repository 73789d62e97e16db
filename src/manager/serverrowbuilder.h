#pragma once

#include "api/countrypresentationdata.h"
#include "api/serverlistgettingresult.h"

#include <QImage>
#include <QPair>
#include <QVector>
#include <functional>

namespace tavero {

// Turns one server list into the server page's rows: one row per country with its small flag and
// its servers sorted by name, the rows sorted by country name.
//
// A fixed number of worker threads share the countries in map order (ascending id): every worker
// but the last takes count / threads consecutive countries, the last takes the rest. Each worker
// starts the flag load of a country on the global thread pool, sorts that country's servers, waits
// for the flag and appends the row to the result under one mutex. No thread outlives build().
class ServerRowBuilder {
public:
    static constexpr int defaultThreadCount = 20;

    // The decoded small flag of a country code, null when there is none. Called on pool threads
    // (or on a worker that takes over a queued load), possibly for several countries at once.
    using FlagLoader = std::function<QImage(const QString& countryCode)>;
    // Told which worker (0-based) built which country's row; called on that worker's thread.
    using RowObserver = std::function<void(int worker, int countryId)>;

    // An empty loader leaves every flag null and starts no pool task. threadCount below 1 counts
    // as 1.
    explicit ServerRowBuilder(FlagLoader flagLoader, int threadCount = defaultThreadCount);

    void setRowObserver(RowObserver observer) { m_rowObserver = std::move(observer); }
    int threadCount() const { return m_threadCount; }

    QVector<CountryPresentationData> build(const ServerListGettingResult& list) const;

    // Country positions [first, end) per worker for countryCount countries in map order.
    static QVector<QPair<int, int>> workerRanges(int countryCount, int threadCount);

private:
    FlagLoader m_flagLoader;
    RowObserver m_rowObserver;
    int m_threadCount;
};

} // namespace tavero
