#include "platform/linux/tunnelresolver.h"
#include "platform/tunnelnetwork.h"
#include "support/testmain.h"

#include <QTemporaryDir>

using tavero::TunnelNetwork;
using tavero::TunnelResolver;

// The resolver file a tunnel replaces comes back exactly (content, or the link it was), on a
// normal release and from the record a crashed client left; values a server pushes cannot put
// anything but addresses and domain names into it.
class TestTunnelResolver : public QObject {
    Q_OBJECT
private slots:
    void pushedOptionsAreFilteredAndOrdered_data()
    {
        QTest::addColumn<QByteArray>("environment");
        QTest::addColumn<QStringList>("servers");
        QTest::addColumn<QStringList>("domains");
        QTest::addColumn<bool>("ipv6");
        QTest::newRow("numbered order, duplicates once")
            << QByteArray("foreign_option_10=dhcp-option DNS 10.0.0.3\n"
                          "foreign_option_2=dhcp-option DNS 10.0.0.2\n"
                          "foreign_option_3=dhcp-option DNS6 fd00::0001\n"
                          "foreign_option_4=dhcp-option DOMAIN corp.example\n"
                          "foreign_option_5=dhcp-option DNS 10.0.0.2\n"
                          "dev=tun0\n")
            << QStringList{"10.0.0.2", "fd00::1", "10.0.0.3"} << QStringList{"corp.example"}
            << false;
        QTest::newRow("hostile values dropped")
            << QByteArray("foreign_option_1=dhcp-option DNS 300.1.1.1\n"
                          "foreign_option_2=dhcp-option DOMAIN a;b\n"
                          "foreign_option_3=dhcp-option DNS fe80::1%eth0\n"
                          "foreign_option_4=dhcp-option DOMAIN x options ndots:9\n"
                          "foreign_option_5=dhcp-option DNS 10.0.0.9 extra\n"
                          "ifconfig_ipv6_local=2001:db8::2\n")
            << QStringList{} << QStringList{} << true;
    }
    void pushedOptionsAreFilteredAndOrdered()
    {
        QFETCH(QByteArray, environment);
        QFETCH(QStringList, servers);
        QFETCH(QStringList, domains);
        QFETCH(bool, ipv6);
        const TunnelNetwork network = TunnelNetwork::fromOpenVpnEnvironment(environment);
        QCOMPARE(network.dnsServers, servers);
        QCOMPARE(network.domains, domains);
        QCOMPARE(network.carriesIpv6, ipv6);
    }

    void originalComesBack_data()
    {
        QTest::addColumn<QString>("original"); // "file", "link" or "none"
        QTest::addColumn<bool>("crashed");     // put back from the record, not by the object
        QTest::addColumn<bool>("rewritten");   // another program rewrote the file meanwhile
        QTest::newRow("file") << "file" << false << false;
        QTest::newRow("file, crash") << "file" << true << false;
        QTest::newRow("link") << "link" << false << false;
        QTest::newRow("link, crash") << "link" << true << false;
        QTest::newRow("none") << "none" << false << false;
        QTest::newRow("rewritten meanwhile") << "file" << false << true;
    }
    void originalComesBack()
    {
        QFETCH(QString, original);
        QFETCH(bool, crashed);
        QFETCH(bool, rewritten);
        QTemporaryDir dir;
        const QString path = dir.filePath("resolv.conf");
        const QByteArray text = "# LAN\nnameserver 192.168.1.1\noptions edns0\n";
        QFile target(dir.filePath("stub.conf"));
        QVERIFY(target.open(QIODevice::WriteOnly) && target.write(text) == text.size());
        target.close();
        if (original == "file")
            QVERIFY(target.copy(path));
        else if (original == "link")
            QVERIFY(QFile::link("stub.conf", path));

        TunnelNetwork network;
        network.dnsServers = QStringList{"10.8.0.1"};
        network.domains = QStringList{"vpn.example"};
        QJsonObject record;
        {
            TunnelResolver resolver(TunnelResolver::Options{path, false});
            QVERIFY(resolver
                        .apply(network, 0,
                               [&record](const QJsonObject& kept) {
                                   record = kept;
                                   return true;
                               })
                        .isSuccess);
            QVERIFY(!QFileInfo(path).isSymLink());
            QFile written(path);
            QVERIFY(written.open(QIODevice::ReadOnly));
            QCOMPARE(written.readAll(), TunnelResolver::fileText(network));
            if (rewritten) {
                QFile other(path);
                QVERIFY(other.open(QIODevice::WriteOnly) && other.write("nameserver 9.9.9.9\n"));
            }
            if (crashed)
                QVERIFY(TunnelResolver::restore(record));
        }
        QFile after(path);
        if (original == "none") {
            QVERIFY(!after.exists());
            return;
        }
        QCOMPARE(QFileInfo(path).isSymLink(), original == "link");
        if (original == "link")
            QCOMPARE(QFile::symLinkTarget(path), QFileInfo(target).absoluteFilePath());
        QVERIFY(after.open(QIODevice::ReadOnly));
        QCOMPARE(after.readAll(), rewritten ? QByteArray("nameserver 9.9.9.9\n") : text);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestTunnelResolver)
#include "tst_tunnelresolver.moc"
