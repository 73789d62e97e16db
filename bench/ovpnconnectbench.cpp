// ovpn-connect: time from OvpnConnection::connect() to success, against a bare
// `openvpn --config` reaching "Initialization Sequence Completed", on the same configuration and
// the same pair of network namespaces (tests/e2e/netns-vpn), runs of the two interleaved.
//   ovpn-connect [RUNS]     (default 10; needs root, /dev/net/tun, ip netns and openvpn)
// Prints both medians and their ratio per transport, then the warnings OpenVPN printed for the
// generated configuration. Exit status 77 when the machine cannot run it.

#include "api/vpnserverinformation.h"
#include "connection/ovpnconnection.h"
#include "support/fakeserverapi.h"
#include "support/netnsvpn.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QSet>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

using tavero::OvpnConnection;
using tavero::test::NetnsVpn;

namespace {

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    const int n = values.size();
    return n % 2 ? values.at(n / 2) : (values.at(n / 2 - 1) + values.at(n / 2)) / 2;
}

double millisecondsOf(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

bool waitForNoTunnel(const NetnsVpn& vpn)
{
    QElapsedTimer timer;
    timer.start();
    while (!vpn.clientTunDevices().isEmpty()) {
        if (timer.elapsed() > 10000) {
            return false;
        }
    }
    return true;
}

// One bare run: the same program directory, the same file; returns -1 on failure.
double bareRun(const NetnsVpn& vpn, const QString& configPath, QSet<QString>& warnings)
{
    QProcess openvpn;
    openvpn.setProcessChannelMode(QProcess::MergedChannels);
    openvpn.setProgram(vpn.programDirectory() + "/openvpn");
    openvpn.setArguments({QStringLiteral("--config"), configPath});
    QElapsedTimer timer;
    timer.start();
    openvpn.start();
    QByteArray output;
    double elapsed = -1;
    while (timer.elapsed() < 30000 && openvpn.state() != QProcess::NotRunning) {
        openvpn.waitForReadyRead(100);
        output += openvpn.readAll();
        if (output.contains("Initialization Sequence Completed")) {
            elapsed = millisecondsOf(timer);
            break;
        }
    }
    openvpn.kill();
    openvpn.waitForFinished();
    for (const QByteArray& line : output.split('\n')) {
        if (line.contains("WARNING") || line.contains("DEPRECATED")) {
            // Drop the time stamp ("YYYY-MM-DD HH:MM:SS ").
            warnings << QString::fromLocal8Bit(line.mid(20)).trimmed();
        }
    }
    if (elapsed < 0) {
        std::fprintf(stderr, "bare openvpn did not come up:\n%s\n", output.constData());
    }
    return elapsed;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    const int runs = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 10;

    QTemporaryDir work;
    NetnsVpn vpn(QStringLiteral(TAVERO_NETNS_VPN_SCRIPT));
    switch (vpn.start(work.path())) {
    case NetnsVpn::Outcome::Running:
        break;
    case NetnsVpn::Outcome::Unsupported:
        std::fprintf(stderr, "ovpn-connect: cannot run here: %s\n", qPrintable(vpn.reason()));
        return 77;
    case NetnsVpn::Outcome::Failed:
        std::fprintf(stderr, "ovpn-connect: netns-vpn failed: %s\n", qPrintable(vpn.reason()));
        return 1;
    }

    tavero::test::FakeServerApi api;
    api.accountInfo = vpn.accountInfo();
    const VpnServerInformation server = vpn.server();
    OvpnConnection driver(api, vpn.programDirectory());

    std::printf("OpenVPN connect, %d runs each, interleaved; medians in ms\n", runs);
    std::printf("%-9s %10s %14s %8s\n", "transport", "driver", "bare openvpn", "ratio");
    QSet<QString> warnings;
    for (const OvpnConnection::ConnectionType type : {OvpnConnection::Udp, OvpnConnection::Tcp}) {
        QString text;
        driver.generateConfigText(type, server.host, api.accountInfo.caCertificate,
                                  api.accountInfo.publicKey, api.accountInfo.privateKey, text);
        QFile config(work.path() + "/client.conf");
        if (!config.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            return 1;
        }
        config.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        config.write(text.toLatin1());
        config.close();

        QVector<double> driverTimes;
        QVector<double> bareTimes;
        for (int i = -1; i < runs; ++i) { // run -1 warms both up and is not counted
            QElapsedTimer timer;
            timer.start();
            const OperationResult result = driver.connect(server, type);
            const double driverTime = millisecondsOf(timer);
            driver.disconnect();
            if (!result.isSuccess) {
                std::fprintf(
                    stderr, "driver failed: %s\nserver log:\n%s\n", qPrintable(result.message),
                    qPrintable(vpn.serverLog(type == OvpnConnection::Tcp ? "tcp" : "udp")));
                return 1;
            }
            const bool clean = waitForNoTunnel(vpn);
            const double bareTime = bareRun(vpn, config.fileName(), warnings);
            if (!clean || bareTime < 0 || !waitForNoTunnel(vpn)) {
                return 1;
            }
            if (i >= 0) {
                driverTimes << driverTime;
                bareTimes << bareTime;
            }
        }
        const double driverMedian = median(driverTimes);
        const double bareMedian = median(bareTimes);
        std::printf("%-9s %10.1f %14.1f %8.1f\n",
                    qPrintable(OvpnConnection::generateConnectionTypeString(type)), driverMedian,
                    bareMedian, driverMedian / bareMedian);
    }
    QStringList sorted = warnings.values();
    sorted.sort();
    std::printf("\nWarnings OpenVPN printed for the generated configuration:\n");
    for (const QString& warning : sorted) {
        std::printf("  %s\n", qPrintable(warning));
    }
    return 0;
}
