#include "platform/linux/linuxplatform.h"
#include "support/testmain.h"

#include <QDBusConnectionInterface>
#include <QDBusMetaType>
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
        if (daemon.isEmpty() || QProcess::execute("/usr/bin/python3", {"-c", "import dbusmock"}))
            QSKIP("needs dbus-daemon and python3-dbusmock (scripts/setup installs them)");
        m_daemon.start(daemon, {"--session", "--nofork", "--nopidfile", "--print-address=1"});
        QVERIFY(m_daemon.waitForReadyRead(10000));
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        m_bus = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(m_address, "nm"));
        QVERIFY(m_bus->isConnected());
        // Nothing answers yet: every dial fails, and hang-up has nothing to do.
        QVERIFY(m_plugins.isValid());
        for (const char* name : {"nm-strongswan-service.name", "nm-l2tp-service.name"})
            QVERIFY(QFile(m_plugins.filePath(name)).open(QIODevice::WriteOnly));
        LinuxPlatform platform(options());
        QVERIFY(!platform.l2tpSupports());
        QVERIFY(!platform.connectL2tp("vpn.example", "u", "p", "k").isSuccess);
        QVERIFY(platform.disconnect().isSuccess);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS", m_address); // the template's bus
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
        const auto connections = vpnSettings();
        QCOMPARE(connections.size(), 1);
        QCOMPARE(connections.first().value("id"), name);
        QCOMPARE(connections.first().value(hostKey), QStringLiteral("vpn.example"));
        QCOMPARE(connections.first().value("user"), QStringLiteral("alice-vpn"));
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

    // Every stored connection's VPN data, with its id under "id", read back over the bus.
    QList<QMap<QString, QString>> vpnSettings() const
    {
        const QString nm = QStringLiteral("org.freedesktop.NetworkManager");
        QList<QMap<QString, QString>> found;
        const QDBusMessage list = m_bus->call(QDBusMessage::createMethodCall(
            nm, "/org/freedesktop/NetworkManager/Settings", nm + ".Settings", "ListConnections"));
        for (const auto& path : qdbus_cast<QList<QDBusObjectPath>>(list.arguments().value(0))) {
            const QDBusMessage reply = m_bus->call(QDBusMessage::createMethodCall(
                nm, path.path(), nm + ".Settings.Connection", "GetSettings"));
            const auto settings =
                qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().value(0));
            auto data = qdbus_cast<QMap<QString, QString>>(settings.value("vpn").value("data"));
            data.insert("id", settings.value("connection").value("id").toString());
            found << data;
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
