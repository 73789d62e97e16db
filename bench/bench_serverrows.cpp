// Building the server page's rows: ServerSelectionController::makeServersData (20 row builders,
// flag loads on the global pool) for 200 countries x 20 servers with every flag already in the
// service client's cache, against the same rows built on one thread with the same flag path,
// interleaved in the same run.
//   bench_serverrows [RUNS]   (default 15)
// Prints both medians and the speed-up (baseline / product).

#include "api/flagpicturesize.h"
#include "benchstats.h"
#include "gui/shell/serverselectioncontroller.h"
#include "manager/serverrowbuilder.h"
#include "support/fakeviewmanager.h"
#include "support/managerfixture.h"
#include "support/pngbytes.h"
#include "support/serverlistmaker.h"
#include "support/testenvironment.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLinearGradient>
#include <QPainter>
#include <QThreadPool>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int countryCount = 200;
constexpr int serversPerCountry = 20;

// A small flag as the service sends it: 30 x 20 PNG with some detail to decode.
QByteArray flagPng()
{
    QImage image(30, 20, QImage::Format_ARGB32);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, 30, 20);
    gradient.setColorAt(0, Qt::red);
    gradient.setColorAt(1, Qt::blue);
    painter.fillRect(image.rect(), gradient);
    painter.setPen(Qt::white);
    painter.drawEllipse(8, 4, 12, 12);
    painter.end();
    return tavero::test::pngBytes(image);
}

ServerListGettingResult bigList()
{
    tavero::test::ServerListMaker maker;
    for (int country = 0; country < countryCount; ++country) {
        const int id = 1000 + (country * 7919) % 5000; // ids not in name order
        maker.country(id, QStringLiteral("c%1").arg(country),
                      QStringLiteral("Country %1").arg((country * 37) % countryCount));
        for (int server = 0; server < serversPerCountry; ++server) {
            maker.server(id, QStringLiteral("srv-%1-%2").arg(country).arg((server * 13) % 20),
                         (server * 17 + country) % 100, server % 5 != 0);
        }
    }
    return maker.list();
}

} // namespace

int main(int argc, char** argv)
{
    tavero::test::TestEnvironment environment;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    qInstallMessageHandler(bench::dropDebugMessages);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 15;

    tavero::test::ManagerFixture fixture;
    fixture.api().flagPicture = flagPng();
    tavero::test::FakeViewManager view;
    ServerSelectionController controller(fixture.manager(), view);
    const ServerListGettingResult list = bigList();
    const tavero::ServerRowBuilder oneThread(
        [&controller](const QString& code) { return controller.countryPixmapFromCode(code); }, 1);

    // Warm up both paths once (image plugins, pool threads).
    controller.makeServersData(list);
    oneThread.build(list);

    QVector<double> product;
    QVector<double> baseline;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        const QVector<CountryPresentationData> rows = controller.makeServersData(list);
        product << double(timer.nsecsElapsed()) / 1e6;
        timer.restart();
        const QVector<CountryPresentationData> single = oneThread.build(list);
        baseline << double(timer.nsecsElapsed()) / 1e6;
        if (rows.size() != countryCount || single.size() != countryCount ||
            rows.first().flagImage.isNull()) {
            std::fprintf(stderr, "bench_serverrows: rows were not built\n");
            return 1;
        }
    }
    const double productMedian = bench::median(product);
    const double baselineMedian = bench::median(baseline);
    std::printf("server rows, %d countries x %d servers, flags cached, %d runs, %d cores\n",
                countryCount, serversPerCountry, runs, QThread::idealThreadCount());
    std::printf("  makeServersData (20 builders + pool) median %8.2f ms\n", productMedian);
    std::printf("  baseline: one thread, same flag path  median %8.2f ms\n", baselineMedian);
    std::printf("  speed-up (baseline / product)          %8.2f\n", baselineMedian / productMedian);
    return 0;
}
