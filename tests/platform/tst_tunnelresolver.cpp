#include "platform/linux/tunnelresolver.h"
#include "support/testmain.h"

#include <QDBusConnectionInterface>
#include <QProcess>
#include <QTemporaryDir>
#include <net/if.h>

using tavero::TunnelNetwork;
using tavero::TunnelResolver;

// The resolver file a tunnel replaces comes back exactly (content, link, or no file), on a normal
// release and from the record a crashed client left; values a server pushes cannot put anything
// but addresses and domain names into it. systemd-resolved (python3-dbusmock on a private bus)
// gets the tunnel's servers and "~." on the tunnel's link, and reverts that link afterwards.
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

    void resolvedLinkIsSetAndReverted_data()
    {
        QTest::addColumn<QString>("device");
        QTest::addColumn<QString>("domain"); // the mock refuses "refuse.example"
        QTest::addColumn<bool>("crashed");
        QTest::addColumn<bool>("reverted");
        QTest::newRow("release") << "lo"
                                 << "vpn.example" << false << true;
        QTest::newRow("crash") << "lo"
                               << "vpn.example" << true << true;
        QTest::newRow("crash, device gone") << "tavero-gone0"
                                            << "vpn.example" << true << false;
        QTest::newRow("refused") << "lo"
                                 << "refuse.example" << false << true;
    }
    void resolvedLinkIsSetAndReverted()
    {
        QFETCH(QString, device);
        QFETCH(QString, domain);
        QFETCH(bool, crashed);
        QFETCH(bool, reverted);
        const QString daemon = QStandardPaths::findExecutable("dbus-daemon");
        if (daemon.isEmpty() || QProcess::execute("/usr/bin/python3", {"-c", "import dbusmock"}))
            QSKIP("needs dbus-daemon and python3-dbusmock (scripts/setup installs them)");
        if (m_bus.isEmpty())
            m_bus = startResolved(daemon);
        QFile::remove(m_log);
        const int link = int(::if_nametoindex("lo"));
        const TunnelNetwork network{device, {"10.8.0.1", "fd00::1"}, {domain}};
        QStringList expected{QString("SetLinkDNS %1 10.8.0.1,fd00::1").arg(link),
                             QString("SetLinkDomains %1 %2,~.").arg(link).arg(domain)};
        if (domain != "refuse.example")
            expected << QString("SetLinkDefaultRoute %1 True").arg(link);
        if (reverted)
            expected << QString("RevertLink %1").arg(link);
        QJsonObject record;
        TunnelResolver resolver(TunnelResolver::Options{{}, true, m_bus});
        const auto keep = [&record](const QJsonObject& kept) { return (record = kept), true; };
        QCOMPARE(resolver.apply(network, link, keep).isSuccess, domain != "refuse.example");
        QVERIFY(crashed ? TunnelResolver::restore(record) : resolver.release());
        QFile log(m_log);
        QVERIFY(log.open(QIODevice::ReadOnly));
        QCOMPARE(QString(log.readAll()).split('\n', Qt::SkipEmptyParts), expected);
    }

private:
    // A private bus with a stand-in for resolved's manager that logs every call to m_log.
    QString startResolved(const QString& daemon)
    {
        m_daemon.start(daemon, {"--session", "--nofork", "--nopidfile", "--print-address=1"});
        if (!m_daemon.waitForReadyRead(10000))
            return {};
        const QString address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SESSION_BUS_ADDRESS", address);
        m_mock.setProcessEnvironment(environment);
        const QString manager = "org.freedesktop.resolve1.Manager";
        m_mock.start("/usr/bin/python3", {"-m", "dbusmock", "org.freedesktop.resolve1",
                                          "/org/freedesktop/resolve1", manager});
        QDBusConnection bus = QDBusConnection::connectToBus(address, address);
        QDeadlineTimer deadline(30000);
        while (!bus.interface()->isServiceRegistered("org.freedesktop.resolve1").value() &&
               !deadline.hasExpired() && m_mock.state() != QProcess::NotRunning)
            m_mock.waitForFinished(100);
        // Each method logs "NAME LINK ITEM,ITEM" (items computed from its arguments by `t = ...`).
        const char* const methods[][3] = {
            {"SetLinkDNS", "ia(iay)",
             "[__import__('socket').inet_ntop(f, bytes(a)) for f, a in args[1]]"},
            {"SetLinkDomains", "ia(sb)", "[('~' if r else '') + n for n, r in args[1]]"},
            {"SetLinkDefaultRoute", "ib", "[str(bool(args[1]))]"},
            {"RevertLink", "i", "[]"}};
        m_log = m_dir.filePath("resolved.log");
        for (const auto& method : methods) {
            QString code = QString("t = %1\nopen('%2', 'a').write(('%3 %d ' % args[0] + "
                                   "','.join(t)).strip() + '\\n')")
                               .arg(method[2], m_log, method[0]);
            if (qstrcmp(method[0], "SetLinkDomains") == 0)
                code += "\nif 'refuse.example' in t: raise dbus.exceptions.DBusException('no')";
            bus.call(QDBusMessage::createMethodCall("org.freedesktop.resolve1",
                                                    "/org/freedesktop/resolve1",
                                                    "org.freedesktop.DBus.Mock", "AddMethod")
                     << manager << method[0] << method[1] << "" << code);
        }
        return address;
    }

    QTemporaryDir m_dir;
    QString m_log;
    QString m_bus;
    QProcess m_daemon;
    QProcess m_mock;
};

TAVERO_TEST_GUILESS_MAIN(TestTunnelResolver)
#include "tst_tunnelresolver.moc"
