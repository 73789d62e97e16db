#include "platform/linux/tunnelresolver.h"
#include "support/testmain.h"

#include <QTemporaryDir>

using tavero::TunnelNetwork;
using tavero::TunnelResolver;

// The resolver file a tunnel replaces comes back exactly (content, link, or no file), on a normal
// release and from the record a crashed client left; values a server pushes cannot put anything
// but addresses and domain names into it.
class TestTunnelResolver : public QObject {
    Q_OBJECT
private slots:
    void pushedOptionsAreFilteredAndOrdered()
    {
        const TunnelNetwork network = TunnelNetwork::fromOpenVpnEnvironment(
            "foreign_option_10=dhcp-option DNS 10.0.0.3\n"
            "foreign_option_2=dhcp-option DNS 10.0.0.2\n"
            "foreign_option_3=dhcp-option DNS6 fd00::0001\n"
            "foreign_option_4=dhcp-option DOMAIN corp.example\n"
            "foreign_option_5=dhcp-option DNS 10.0.0.2\n"
            "foreign_option_6=dhcp-option DNS 300.1.1.1\n"
            "foreign_option_7=dhcp-option DOMAIN a;b\n"
            "foreign_option_8=dhcp-option DNS fe80::1%eth0\n"
            "foreign_option_9=dhcp-option DOMAIN x options ndots:9\n"
            "foreign_option_11=dhcp-option DNS 10.0.0.9 extra\n"
            "dev=tun0\nifconfig_ipv6_local=2001:db8::2\n");
        QCOMPARE(network.dnsServers, (QStringList{"10.0.0.2", "fd00::1", "10.0.0.3"}));
        QCOMPARE(network.domains, QStringList{"corp.example"});
        QCOMPARE(network.device, QStringLiteral("tun0"));
        QVERIFY(network.carriesIpv6);
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
        QTest::newRow("none, crash") << "none" << true << false;
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
        QFile stub(dir.filePath("stub.conf"));
        QVERIFY(stub.open(QIODevice::WriteOnly) && stub.write(text) == text.size());
        stub.close();
        QVERIFY(original == "none" ||
                (original == "file" ? stub.copy(path) : QFile::link("stub.conf", path)));
        const TunnelNetwork network{"tun0", {"10.8.0.1"}, {"vpn.example"}};
        QJsonObject record;
        {
            TunnelResolver resolver(TunnelResolver::Options{path, false});
            const auto keep = [&record](const QJsonObject& kept) { return (record = kept), true; };
            QVERIFY(resolver.apply(network, 0, keep).isSuccess);
            QFile written(path);
            QVERIFY(!QFileInfo(path).isSymLink() && written.open(QIODevice::ReadWrite));
            QCOMPARE(written.readAll(), TunnelResolver::fileText(network));
            if (rewritten)
                QVERIFY(written.resize(0) && written.write("nameserver 9.9.9.9\n") > 0);
            written.close();
            if (crashed)
                QVERIFY(TunnelResolver::restore(record));
        }
        QFile after(path);
        QCOMPARE(after.exists(), original != "none");
        QCOMPARE(QFileInfo(path).isSymLink(), original == "link");
        if (original == "link")
            QCOMPARE(QFile::symLinkTarget(path), QFileInfo(stub).absoluteFilePath());
        QVERIFY(original == "none" || after.open(QIODevice::ReadOnly));
        QCOMPARE(after.readAll(), original == "none" ? QByteArray()
                                  : rewritten        ? QByteArray("nameserver 9.9.9.9\n")
                                                     : text);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestTunnelResolver)
#include "tst_tunnelresolver.moc"
