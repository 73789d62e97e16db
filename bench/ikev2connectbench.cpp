// ikev2-connect: time from LinuxPlatform::connectIKEv2() to success (its own charon, trust store,
// routes) against a bare strongSwan bring-up on the same namespaces: charon started by a shell in
// a private mount namespace, `swanctl --load-all` and `swanctl --initiate` (only the development
// CA, no routes). Also the `swanctl --initiate` alone, against a charon already running. Runs of
// the two interleaved, against `tavero-devservice --ikev2`.
//   ikev2-connect [RUNS]     (default 10; needs root, /dev/net/tun and strongSwan)
// Prints the medians and the ratios. Exit status 77 when the machine cannot run it.

#include "benchstats.h"
#include "platform/linux/linuxplatform.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

namespace {

// The baseline: prints the milliseconds of the whole bring-up and of the initiate alone.
constexpr char bareScript[] = R"(set -e
dir=$1 host=$2
export STRONGSWAN_CONF=$dir/strongswan.conf
start=$(date +%s%N)
unshare -m sh -c 'mount --bind "$1" /run && exec env STRONGSWAN_CONF=/run/strongswan.conf /usr/lib/ipsec/charon' sh "$dir" </dev/null >/dev/null 2>&1 &
pid=$!
until [ -S "$dir/charon.vici" ] && [ -s "$dir/charon.pid" ]; do kill -0 $pid; sleep 0.002; done
swanctl --load-all --noprompt --file "$dir/swanctl/swanctl.conf" --uri "unix://$dir/charon.vici" >/dev/null 2>&1
initiate=$(date +%s%N)
swanctl --initiate --child tavero --uri "unix://$dir/charon.vici" >/dev/null 2>&1
end=$(date +%s%N)
echo $(( (end - start) / 1000 )) $(( (end - initiate) / 1000 ))
kill $pid; wait $pid || true
)";

bool writeBareConfiguration(const QString& dir, const QString& host, const QString& ca)
{
    QFile::remove(dir + "/charon.pid");
    if (!QDir().mkpath(dir + "/swanctl/x509ca") || !QFile::copy(ca, dir + "/swanctl/x509ca/ca.pem"))
        return false;
    QFile conf(dir + "/strongswan.conf");
    QFile swanctl(dir + "/swanctl/swanctl.conf");
    if (!conf.open(QIODevice::WriteOnly) || !swanctl.open(QIODevice::WriteOnly))
        return false;
    conf.write("charon {\n port = 0\n port_nat_t = 0\n routing_table = 2217\n"
               " routing_table_prio = 2217\n"
               " load = random nonce pem pkcs1 pkcs8 x509 constraints pubkey openssl kdf hmac "
               "sha1 sha2 kernel-libipsec kernel-netlink socket-default vici eap-identity "
               "eap-mschapv2\n"
               " plugins {\n  kernel-netlink {\n   fwmark = 0x54410001\n  }\n"
               "  vici {\n   socket = unix:///run/charon.vici\n  }\n }\n}\n"
               "swanctl {\n load = pem pkcs1 pkcs8 x509 openssl\n}\n");
    swanctl.write(QStringLiteral("connections {\n tavero {\n  version = 2\n  remote_addrs = %1\n"
                                 "  vips = 0.0.0.0\n  encap = yes\n"
                                 "  local {\n   auth = eap-mschapv2\n   eap_id = alice-vpn\n  }\n"
                                 "  remote {\n   auth = pubkey\n   id = %1\n  }\n"
                                 "  children {\n   tavero {\n    remote_ts = 0.0.0.0/0\n   }\n  }\n"
                                 " }\n}\nsecrets {\n eap-a {\n  id = alice-vpn\n"
                                 "  secret = Alice-VPN-secret\n }\n}\n")
                      .arg(host)
                      .toUtf8());
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    qInstallMessageHandler(bench::dropDebugMessages);
    const int runs = argc > 1 ? qMax(1, QString(argv[1]).toInt()) : 10;
    if (::geteuid() != 0 || !QFile::exists("/dev/net/tun") ||
        !QFile::exists("/usr/lib/ipsec/charon")) {
        std::fprintf(stderr, "ikev2-connect: needs root, /dev/net/tun and strongSwan\n");
        return 77;
    }
    QTemporaryDir work;
    QProcess service;
    service.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    service.start(TAVERO_DEVSERVICE_PATH,
                  {"--ikev2", "--exit-with-parent", "--state-dir", work.filePath("service"),
                   "--https-port", "0", "--http-port", "0", "--tunnel-port", "0"});
    while (!service.canReadLine() && service.waitForReadyRead(120000)) {
    }
    const QJsonObject ready = QJsonDocument::fromJson(service.readLine()).object();
    const QString host = ready.value("ikev2").toString();
    const int fd = ::open(qPrintable("/run/netns/" + ready.value("netns").toString()), O_RDONLY);
    if (host.isEmpty() || fd < 0 || ::setns(fd, CLONE_NEWNET) != 0) {
        std::fprintf(stderr, "ikev2-connect: the service's IKEv2 responder did not start\n");
        return 1;
    }
    ::close(fd);
    const QString ca = work.filePath("service/ca.pem");
    qputenv("TAVERO_CA_FILE", QFile::encodeName(ca));

    tavero::StrongswanPaths paths;
    paths.stateDirectory = work.filePath("platform");
    QVector<double> platformMs, bareMs, initiateMs;
    for (int run = 0; run < runs; ++run) {
        tavero::LinuxPlatform platform(tavero::LinuxPlatform::Options{{}, {}, {}, paths});
        QElapsedTimer clock;
        clock.start();
        const OperationResult result =
            platform.connectIKEv2(host, "alice-vpn", "Alice-VPN-secret", false);
        platformMs << double(clock.nsecsElapsed()) / 1e6;
        if (!result.isSuccess || !platform.disconnect().isSuccess) {
            std::fprintf(stderr, "ikev2-connect: the platform's connect failed\n");
            return 1;
        }

        const QString bare = work.filePath(QStringLiteral("bare%1").arg(run));
        QProcess shell;
        if (!writeBareConfiguration(bare, host, ca))
            return 1;
        shell.start("bash", {"-c", bareScript, "bash", bare, host});
        shell.waitForFinished(60000);
        const QStringList times = QString(shell.readAllStandardOutput()).split(' ');
        if (times.size() != 2) {
            std::fprintf(stderr, "ikev2-connect: the bare bring-up failed\n");
            return 1;
        }
        bareMs << times.at(0).toDouble() / 1000;
        initiateMs << times.at(1).toDouble() / 1000;
    }
    const double platformMedian = bench::median(platformMs);
    std::printf("runs %d\nplatform connectIKEv2 (charon, CAs, routes): median %.1f ms\n"
                "bare charon + swanctl --load-all + --initiate:  median %.1f ms  ratio %.2f\n"
                "swanctl --initiate alone:                       median %.1f ms  ratio %.2f\n",
                runs, platformMedian, bench::median(bareMs), platformMedian / bench::median(bareMs),
                bench::median(initiateMs), platformMedian / bench::median(initiateMs));
    std::fflush(stdout);
    service.terminate();
    service.waitForFinished(30000);
    return 0;
}
