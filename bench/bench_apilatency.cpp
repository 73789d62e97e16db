// Request latency of the service client against the development service on 127.0.0.1.
//
// ServerApi keeps one network manager per thread, so its exchanges reuse a kept-alive connection
// (and its TLS session) until the routes change. The baseline is the same GET over one kept-alive
// connection of a plain QNetworkAccessManager, measured in the same run, request for request; a
// ratio near 1 means the client adds nothing to the transport (before kept-alive connections it was
// about 6).
// For comparison it also times a new connection per request, which is what the client formerly
// paid.
//   bench_apilatency [REQUESTS]   (default 300)

#include "api/serverapi.h"
#include "support/devservice.h"
#include "support/messagecapture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

double percentile(std::vector<double> samples, double fraction)
{
    std::sort(samples.begin(), samples.end());
    return samples.at(static_cast<std::size_t>(fraction * double(samples.size() - 1)));
}

double milliseconds(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

void report(const char* what, const std::vector<double>& samples)
{
    std::printf("%-52s median %7.3f ms  p10 %7.3f  p90 %7.3f  (n=%zu)\n", what,
                percentile(samples, 0.5), percentile(samples, 0.1), percentile(samples, 0.9),
                samples.size());
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const int requests = argc > 1 ? std::max(10, atoi(argv[1])) : 300;
    if (qEnvironmentVariableIsEmpty("TAVERO_DEVSERVICE"))
        qputenv("TAVERO_DEVSERVICE", TAVERO_DEVSERVICE_PATH);

    tavero::test::DevService service;
    if (!service.isRunning()) {
        std::fprintf(stderr, "bench_apilatency: %s\n", qPrintable(service.errorText()));
        return 1;
    }
    tavero::test::MessageCapture quiet; // the client's debug lines would swamp the output

    tavero::ServerApi api(service.endpoints());
    QElapsedTimer timer;
    timer.start();
    const IpGettingResult first = api.receiveIp();
    const double cold = milliseconds(timer);
    if (first.status != RequestResult::Ok) {
        std::fprintf(stderr, "bench_apilatency: the first request failed (%d)\n", first.status);
        return 1;
    }

    QNetworkAccessManager manager;
    QNetworkRequest request{QUrl(service.ipInfoUrl())};
    request.setSslConfiguration(QSslConfiguration::defaultConfiguration());
    const auto baselineGet = [&](QNetworkAccessManager& through) {
        // Deleted at once: a deferred deletion would wait for an outer event loop that never runs.
        const std::unique_ptr<QNetworkReply> reply(through.get(request));
        QEventLoop loop;
        QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
        return reply->error() == QNetworkReply::NoError && !reply->readAll().isEmpty();
    };
    if (!baselineGet(manager)) // makes the baseline's connection
        return 1;

    // Interleaved, so load from elsewhere on the machine falls on both alike.
    std::vector<double> client;
    std::vector<double> kept;
    std::vector<double> fresh;
    for (int i = 0; i < requests; ++i) {
        timer.restart();
        if (api.receiveIp().status != RequestResult::Ok)
            return 1;
        client.push_back(milliseconds(timer));
        timer.restart();
        if (!baselineGet(manager))
            return 1;
        kept.push_back(milliseconds(timer));
        timer.restart();
        QNetworkAccessManager own; // a connection and TLS handshake per exchange, as formerly
        if (!baselineGet(own))
            return 1;
        fresh.push_back(milliseconds(timer));
    }

    std::printf("first ServerApi request (cold start and TLS handshake): %.3f ms\n", cold);
    report("ServerApi::receiveIp", client);
    report("baseline: one kept-alive QNetworkAccessManager", kept);
    report("for comparison: a new connection each", fresh);
    std::printf("ratio ServerApi / kept-alive baseline (medians): %.2f\n",
                percentile(client, 0.5) / percentile(kept, 0.5));
    return 0;
}
