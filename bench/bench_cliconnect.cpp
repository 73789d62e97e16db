// tavero-cli connect: from starting the program to its verified "Connected" line, with the
// OpenVPN stand-in against the development service, against a bare run of the stand-in (from
// start to "Initialization Sequence Completed") on the configuration the client generates for the
// same server and account. Runs of the two are interleaved.
//   bench_cliconnect [RUNS]   (default 10; loopback only, needs administrator rights for OpenVPN)
// Prints both medians and their ratio. Exit status 77 when the machine cannot run it.

#include "api/serverapi.h"
#include "app/settings.h"
#include "benchstats.h"
#include "connection/ovpnconnection.h"
#include "platform/nativeplatform.h"
#include "support/devservice.h"
#include "support/testenvironment.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <cstdio>

namespace {

// Milliseconds until a line of `process` contains `marker`; -1 on failure or after 60 s.
double timeToLine(QProcess& process, const QElapsedTimer& timer, const QByteArray& marker)
{
    while (timer.elapsed() < 60000) {
        while (process.canReadLine()) {
            if (process.readLine().contains(marker))
                return double(timer.nsecsElapsed()) / 1e6;
        }
        if (process.state() == QProcess::NotRunning)
            return -1;
        process.waitForReadyRead(100);
    }
    return -1;
}

void stop(QProcess& process, int signalNumber)
{
    ::kill(pid_t(process.processId()), signalNumber);
    if (!process.waitForFinished(30000)) {
        process.kill();
        process.waitForFinished(5000);
    }
}

} // namespace

int main(int argc, char** argv)
{
    tavero::test::TestEnvironment environment;
    if (qEnvironmentVariableIsEmpty("TAVERO_DEVSERVICE"))
        qputenv("TAVERO_DEVSERVICE", TAVERO_DEVSERVICE_PATH);
    QCoreApplication app(argc, argv);
    qInstallMessageHandler(bench::dropDebugMessages);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 10;
    const QString binDir = QStringLiteral(TAVERO_BUILD_DIR);
    const QString cli = binDir + QStringLiteral("/tavero-cli");
    const QString openvpn = binDir + QStringLiteral("/bin/openvpn");
    if (!tavero::NativePlatform::isRunningAsAdministrator() || !QFile::exists(cli) ||
        !QFile::exists(openvpn)) {
        std::fprintf(stderr, "bench_cliconnect: needs administrator rights, %s and %s\n",
                     qPrintable(cli), qPrintable(openvpn));
        return 77;
    }
    tavero::test::DevService service;
    if (!service.isRunning()) {
        std::fprintf(stderr, "bench_cliconnect: %s\n", qPrintable(service.errorText()));
        return 1;
    }
    QTemporaryDir work;
    const tavero::Endpoints endpoints = service.endpoints();
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TAVERO_API_URL"), endpoints.apiBaseUrl);
    env.insert(QStringLiteral("TAVERO_IPINFO_URL"), endpoints.ipInfoUrl);
    env.insert(QStringLiteral("TAVERO_PROBE_URL"), endpoints.probeUrl);
    env.insert(QStringLiteral("TAVERO_CA_FILE"), endpoints.caFile);
    env.insert(QStringLiteral("TAVERO_KEEP_NETWORK"), QStringLiteral("1"));
    env.insert(QStringLiteral("TAVERO_FAKE_OPENVPN_TUNNEL"),
               QStringLiteral("%1:%2").arg(service.tunnelHost()).arg(service.tunnelPort()));

    // OpenVPN over UDP only, the kill switch off; log in once, as a script would.
    tavero::Settings().setProtocolTypes(OvpnUdp);
    const tavero::test::DevService::Account account = service.account(0);
    QProcess login;
    login.setProcessEnvironment(env);
    login.start(cli, {QStringLiteral("login"), account.email});
    login.write(account.password.toUtf8() + '\n');
    login.closeWriteChannel();
    if (!login.waitForFinished(60000) || login.exitCode() != 0) {
        std::fprintf(stderr, "bench_cliconnect: login failed: %s\n",
                     login.readAllStandardError().constData());
        return 1;
    }

    // The configuration the client generates for the server it will connect to.
    tavero::ServerApi api(endpoints);
    api.loginByEmail(account.email, account.password);
    const AccountInfoGettingResult info = api.receiveAccountInfo();
    const QString serverName = tavero::Settings().serverName();
    QString host;
    const ServerListGettingResult list = api.receiveServerList();
    for (const QVector<VpnServerInformation>& servers : list.serversByCountry) {
        for (const VpnServerInformation& server : servers) {
            if (server.name == serverName)
                host = server.host;
        }
    }
    QString config;
    tavero::OvpnConnection driver(api);
    driver.generateConfigText(tavero::OvpnConnection::Udp, host, info.caCertificate, info.publicKey,
                              info.privateKey, config);
    const QString configPath = work.filePath(QStringLiteral("bare.ovpn"));
    QFile configFile(configPath);
    if (host.isEmpty() || !configFile.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "bench_cliconnect: no configuration for %s\n", qPrintable(serverName));
        return 1;
    }
    configFile.write(config.toUtf8());
    configFile.close();

    QVector<double> product;
    QVector<double> baseline;
    for (int run = 0; run < runs; ++run) {
        QProcess bare;
        bare.setProcessEnvironment(env);
        bare.setProcessChannelMode(QProcess::MergedChannels);
        QElapsedTimer timer;
        timer.start();
        bare.start(openvpn, {QStringLiteral("--config"), configPath});
        const double bareMs = timeToLine(bare, timer, "Initialization Sequence Completed");
        stop(bare, SIGTERM);

        QProcess connect;
        connect.setProcessEnvironment(env);
        timer.restart();
        connect.start(cli, {QStringLiteral("--json"), QStringLiteral("connect")});
        const double cliMs = timeToLine(connect, timer, "\"mode\":\"Connected\"");
        stop(connect, SIGINT);
        if (bareMs < 0 || cliMs < 0 || connect.exitCode() != 0) {
            std::fprintf(stderr, "bench_cliconnect: run %d failed (bare %.1f, cli %.1f): %s\n", run,
                         bareMs, cliMs, connect.readAllStandardError().constData());
            return 1;
        }
        baseline << bareMs;
        product << cliMs;
    }
    const double cliMedian = bench::median(product);
    const double bareMedian = bench::median(baseline);
    std::printf("tavero-cli connect to verified Connected, OpenVPN stand-in over UDP, %d runs\n",
                runs);
    std::printf("  tavero-cli connect (start to Connected)      median %8.1f ms\n", cliMedian);
    std::printf("  baseline: bare stand-in to Initialization    median %8.1f ms\n", bareMedian);
    std::printf("  ratio (tavero-cli / bare)                     %8.1f\n", cliMedian / bareMedian);
    return 0;
}
