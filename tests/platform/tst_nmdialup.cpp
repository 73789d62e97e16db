#include "platform/linux/linuxplatform.h"
#include "support/testmain.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

using tavero::LinuxPlatform;
using tavero::NetworkManagerDialup;

// Dial-up without administrator rights against python3-dbusmock's NetworkManager on a private
// bus: the connection the platform writes, its activation, and that hang-up leaves none behind.
class TestNmDialup : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (daemon.isEmpty())
            QSKIP("needs dbus-daemon for a private message bus");
        QProcess probe;
        probe.start(QStringLiteral("/usr/bin/python3"), {"-c", "import dbusmock"});
        if (!probe.waitForFinished(30000) || probe.exitCode() != 0)
            QSKIP("needs python3-dbusmock (scripts/setup installs it)");
        m_daemon.start(daemon, {"--session", "--nofork", "--nopidfile", "--print-address=1"});
        QVERIFY(m_daemon.waitForReadyRead(10000));
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        m_bus = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(m_address, "nm"));
        QVERIFY(m_bus->isConnected());

        // Nothing answers yet: every dial fails, and hang-up has nothing to do.
        QVERIFY(m_plugins.isValid());
        for (const char* name : {"nm-strongswan-service.name", "nm-l2tp-service.name"}) {
            QFile plugin(m_plugins.filePath(name));
            QVERIFY(plugin.open(QIODevice::WriteOnly));
        }
        LinuxPlatform platform(options());
        QVERIFY(!platform.l2tpSupports());
        QVERIFY(!platform.connectL2tp("vpn.example", "u", "p", "k").isSuccess);
        QVERIFY(platform.disconnect().isSuccess);

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SESSION_BUS_ADDRESS", m_address);
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS",
                           m_address); // the template asks for the system bus
        m_mock.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_mock.setProcessEnvironment(environment);
        m_mock.start("/usr/bin/python3", {"-m", "dbusmock", "--template", "networkmanager"});
        QTRY_VERIFY_WITH_TIMEOUT(
            m_bus->interface()->isServiceRegistered("org.freedesktop.NetworkManager").value(),
            30000);
    }

    void cleanupTestCase()
    {
        for (QProcess* process : {&m_mock, &m_daemon}) {
            process->terminate();
            process->waitForFinished(10000);
        }
    }

    void dialWritesActivatesAndRemoves_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("hostKey");
        QTest::newRow("IKEv2") << int(NetworkManagerDialup::Kind::IKEv2) << "TAVERO IKEv2"
                               << "address";
        QTest::newRow("L2TP") << int(NetworkManagerDialup::Kind::L2tp) << "TAVERO L2TP"
                              << "gateway";
    }
    void dialWritesActivatesAndRemoves()
    {
        QFETCH(int, kind);
        QFETCH(QString, name);
        QFETCH(QString, hostKey);
        LinuxPlatform platform(options());
        QVERIFY(platform.l2tpSupports());
        const OperationResult result =
            kind == int(NetworkManagerDialup::Kind::L2tp)
                ? platform.connectL2tp("vpn.example", "alice-vpn", "secret", "psk")
                : platform.connectIKEv2("vpn.example", "alice-vpn", "secret", true);
        QVERIFY2(result.isSuccess, qPrintable(result.message));

        const QList<QVariantMap> connections = vpnSettings();
        QCOMPARE(connections.size(), 1);
        const QVariantMap vpn = connections.first();
        QCOMPARE(vpn.value("id").toString(), name);
        QCOMPARE(vpn.value(hostKey).toString(), QStringLiteral("vpn.example"));
        QCOMPARE(vpn.value("user").toString(), QStringLiteral("alice-vpn"));

        QVERIFY(platform.disconnect().isSuccess);
        QVERIFY(vpnSettings().isEmpty());
    }

    void missingPluginFailsWithItsMessage()
    {
        LinuxPlatform platform(options());
        QVERIFY(!platform.pptpSupports());
        const OperationResult result = platform.connectPptp("vpn.example", "u", "p");
        QVERIFY(!result.isSuccess);
        QCOMPARE(result.message, QStringLiteral("warning.cannot_open_pptp_connection"));
        QVERIFY(vpnSettings().isEmpty());
    }

private:
    LinuxPlatform::Options options() const
    {
        LinuxPlatform::Options options;
        const QDBusConnection bus = *m_bus;
        const QString plugins = m_plugins.path();
        options.dialupFactory = [bus, plugins] {
            NetworkManagerDialup::Options dialup;
            dialup.bus = bus;
            dialup.pluginDirectory = plugins;
            return std::make_unique<NetworkManagerDialup>(dialup);
        };
        return options;
    }

    // Every stored connection's id with its VPN data, read back over the bus.
    QList<QVariantMap> vpnSettings() const
    {
        QList<QVariantMap> found;
        const QDBusMessage list = m_bus->call(QDBusMessage::createMethodCall(
            "org.freedesktop.NetworkManager", "/org/freedesktop/NetworkManager/Settings",
            "org.freedesktop.NetworkManager.Settings", "ListConnections"));
        for (const QDBusObjectPath& path :
             qdbus_cast<QList<QDBusObjectPath>>(list.arguments().value(0))) {
            const QDBusMessage reply = m_bus->call(QDBusMessage::createMethodCall(
                "org.freedesktop.NetworkManager", path.path(),
                "org.freedesktop.NetworkManager.Settings.Connection", "GetSettings"));
            const auto settings =
                qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().value(0));
            QVariantMap entry;
            const auto data =
                qdbus_cast<QMap<QString, QString>>(settings.value("vpn").value("data"));
            for (auto it = data.cbegin(); it != data.cend(); ++it)
                entry.insert(it.key(), it.value());
            entry.insert("id", settings.value("connection").value("id"));
            found << entry;
        }
        return found;
    }

    QProcess m_daemon;
    QProcess m_mock;
    QString m_address;
    std::unique_ptr<QDBusConnection> m_bus;
    QTemporaryDir m_plugins;
};

TAVERO_TEST_GUILESS_MAIN(TestNmDialup)
#include "tst_nmdialup.moc"
