#include "manager/serverrowbuilder.h"

#include "manager/serverlistqueries.h"

#include <QMutex>
#include <QMutexLocker>
#include <QtConcurrent>
#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace tavero {

ServerRowBuilder::ServerRowBuilder(FlagLoader flagLoader, int threadCount)
    : m_flagLoader(std::move(flagLoader))
    , m_threadCount(std::max(1, threadCount))
{}

QVector<QPair<int, int>> ServerRowBuilder::workerRanges(int countryCount, int threadCount)
{
    threadCount = std::max(1, threadCount);
    countryCount = std::max(0, countryCount);
    const int chunk = countryCount / threadCount;
    QVector<QPair<int, int>> ranges;
    ranges.reserve(threadCount);
    int first = 0;
    for (int worker = 0; worker < threadCount - 1; ++worker) {
        ranges.append({first, first + chunk});
        first += chunk;
    }
    ranges.append({first, countryCount});
    return ranges;
}

QVector<CountryPresentationData> ServerRowBuilder::build(const ServerListGettingResult& list) const
{
    // Workers read the copies below and never touch `list`, which may change after we return.
    const QVector<int> countryIds = list.serversByCountry.keys().toVector();
    const QVector<QVector<VpnServerInformation>> serversByCountry =
        list.serversByCountry.values().toVector();
    const QMap<int, CountryInformation> countriesById = list.countriesById;

    QVector<CountryPresentationData> rows;
    rows.reserve(countryIds.size());
    QMutex rowsMutex;

    const auto buildRange = [&](int worker, int first, int end) {
        for (int index = first; index < end; ++index) {
            CountryPresentationData row;
            row.country = countriesById.value(countryIds[index]);
            QFuture<QImage> flag;
            if (m_flagLoader)
                flag = QtConcurrent::run(m_flagLoader, row.country.code);
            row.servers = ServerListQueries::sortedByName(serversByCountry[index]);
            if (m_flagLoader)
                row.flagImage = flag.result();
            if (m_rowObserver)
                m_rowObserver(worker, countryIds[index]);
            const QMutexLocker locker(&rowsMutex);
            rows.append(std::move(row));
        }
    };

    const QVector<QPair<int, int>> ranges = workerRanges(countryIds.size(), m_threadCount);
    std::vector<std::thread> workers;
    workers.reserve(ranges.size());
    for (int worker = 0; worker < ranges.size(); ++worker) {
        try {
            workers.emplace_back(buildRange, worker, ranges[worker].first, ranges[worker].second);
        } catch (const std::system_error&) {
            // Out of threads: build that share here rather than lose its countries.
            buildRange(worker, ranges[worker].first, ranges[worker].second);
        }
    }
    for (std::thread& worker : workers)
        worker.join();

    std::sort(rows.begin(), rows.end(),
              [](const CountryPresentationData& a, const CountryPresentationData& b) {
                  return a.country.name < b.country.name;
              });
    return rows;
}

} // namespace tavero
