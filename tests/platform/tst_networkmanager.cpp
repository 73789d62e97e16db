#include "platform/linux/linuxplatform.h"
#include "platform/linux/networkmanagerbackend.h"
#include "support/testmain.h"

#include <QDBusConnectionInterface>
#include <QtTest>

using tavero::LinuxPlatform;
using tavero::NetworkManagerBackend;
using tavero::NetworkManagerDialup;

namespace {

const QString nm = QStringLiteral("org.freedesktop.NetworkManager");
const QString nmPath = QStringLiteral("/org/freedesktop/NetworkManager");
const QString mockInterface = QStringLiteral("org.freedesktop.DBus.Mock");

} // namespace

// The kill switch and dial-up without administrator rights against python3-dbusmock's
// NetworkManager on a private bus: what is switched off and back on, the connection the platform
// writes, its activation, and that hang-up leaves none behind.
class TestNetworkManager : public QObject {
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
        // Nothing answers yet: the switch cannot reach it, every dial fails, hang-up has nothing
        // to do.
        QVERIFY(m_plugins.isValid());
        for (const char* name : {"nm-strongswan-service.name", "nm-l2tp-service.name"})
            QVERIFY(QFile(m_plugins.filePath(name)).open(QIODevice::WriteOnly));
        LinuxPlatform platform(options());
        QVERIFY(!NetworkManagerBackend::isRunning(*m_bus));
        QCOMPARE(platform.turnOffInternet().message,
                 "warning.could_not_connect_to_the_connection_manager_library");
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
        QVERIFY(!platform.l2tpSupports());
        QVERIFY(!platform.connectL2tp("vpn.example", "u", "p", "k").isSuccess);
        QVERIFY(platform.disconnect().isSuccess);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS", m_address); // the template's bus
        m_mock.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_mock.setStandardOutputFile(QProcess::nullDevice()); // its call log would fill the pipe
        m_mock.setProcessEnvironment(environment);
        m_mock.start("/usr/bin/python3", {"-m", "dbusmock", "--template", "networkmanager"});
        QTRY_VERIFY_WITH_TIMEOUT(m_bus->interface()->isServiceRegistered(nm).value(), 30000);
        QVERIFY(NetworkManagerBackend::isRunning(*m_bus));
        // The template deactivates a connection by taking it off the devices: it needs one.
        QVERIFY(mock(nmPath, "AddEthernetDevice", {"eth", "eth0", 100}).isValid());
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
        // No plugin for it: refused with its message, nothing written.
        QTest::newRow("PPTP") << int(NetworkManagerDialup::Kind::Pptp) << ""
                              << "";
    }
    void dialWritesActivatesAndRemoves()
    {
        QFETCH(int, kind);
        QFETCH(QString, name);
        QFETCH(QString, hostKey);
        LinuxPlatform platform(options());
        QVERIFY(platform.l2tpSupports() && !platform.pptpSupports());
        const OperationResult result =
            kind == int(NetworkManagerDialup::Kind::L2tp)
                ? platform.connectL2tp("vpn.example", "alice-vpn", "secret", "psk")
            : kind == int(NetworkManagerDialup::Kind::Pptp)
                ? platform.connectPptp("vpn.example", "alice-vpn", "secret")
                : platform.connectIKEv2("vpn.example", "alice-vpn", "secret", true);
        if (name.isEmpty()) {
            QCOMPARE(result.message, QStringLiteral("warning.cannot_open_pptp_connection"));
            QVERIFY(vpnSettings().isEmpty());
            return;
        }
        QVERIFY2(result.isSuccess, qPrintable(result.message));
        const auto connections = vpnSettings();
        QCOMPARE(connections.size(), 1);
        QCOMPARE(connections.first().value("id"), name);
        QCOMPARE(connections.first().value(hostKey), QStringLiteral("vpn.example"));
        QCOMPARE(connections.first().value("user"), QStringLiteral("alice-vpn"));
        QVERIFY(platform.disconnect().isSuccess);
        QVERIFY(vpnSettings().isEmpty());
    }

    // Off skips loopback and connections already leaving; on
    // brings back only what is still off and still exists, and a refused activation is reported and
    // kept for the next try.
    void switchOffAndOn()
    {
        // NetworkManager names a profile it does not know with this error; the template does not.
        QVERIFY(mock(nmPath + "/Settings", "AddMethod",
                     {nm + ".Settings", "GetConnectionByUuid", "s", "o",
                      "ret = None\n"
                      "for o in list(objects):\n"
                      "    if getattr(objects[o], 'settings', {}).get('connection', {})"
                      ".get('uuid') == args[0]: ret = o\n"
                      "if ret is None: raise dbus.exceptions.DBusException('No such UUID.', "
                      "name='org.freedesktop.NetworkManager.Settings.InvalidConnection')\n"})
                    .isValid());
        QMap<QString, QString> profiles;
        for (const auto& [uuid, type, state] :
             QVector<std::tuple<QString, QString, uint>>{{"lo", "loopback", 2},
                                                         {"wired", "802-3-ethernet", 2},
                                                         {"wifi", "802-11-wireless", 2},
                                                         {"vpn", "vpn", 1},
                                                         {"leaving", "802-3-ethernet", 3},
                                                         {"spare", "802-3-ethernet", 0}}) {
            profiles[uuid] = addProfile(uuid, type);
            if (state != 0)
                activate(profiles[uuid], uuid, state);
        }
        LinuxPlatform platform(options());
        const OperationResult off = platform.turnOffInternet();
        QVERIFY2(off.isSuccess, qPrintable(off.message));
        QCOMPARE(activeUuids(), QStringList({"leaving", "lo"}));
        QCOMPARE(platform.turnOffInternet().message, "warning.failed_to_turn_off_the_internet");

        activate(profiles["wifi"], "byuser", 2); // the user brought it back already
        QCOMPARE(call(profiles["vpn"], nm + ".Settings.Connection", "Delete", {}).type(),
                 QDBusMessage::ReplyMessage); // and deleted this one
        bool reenabled = false;
        const OperationResult on = platform.turnOnInternet(reenabled);
        QVERIFY2(on.isSuccess, qPrintable(on.message));
        QVERIFY(reenabled);
        QCOMPARE(activeUuids(), QStringList({"leaving", "lo", "wifi", "wired"}));
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());

        const QVariantList activation{nm, "ActivateConnection", "ooo", "o",
                                      "raise dbus.exceptions.DBusException('No suitable device.', "
                                      "name='org.freedesktop.NetworkManager.UnknownDevice')"};
        QVERIFY(mock(nmPath, "AddMethod", activation).isValid());
        QVERIFY(platform.turnOffInternet().isSuccess);
        const OperationResult refused = platform.turnOnInternet(reenabled);
        QCOMPARE(refused.message, "warning.failed_to_turn_on_the_internet");
        QVERIFY2(reenabled, "an attempt was made");
        // Kept, so the next restore (or the next start) tries it again.
        QVERIFY(platform.haveDisabledNetDevicesByKillSwitch());
        QVariantList working = activation;
        working[4] = "ret = self.activate_connection(self, args[0], args[1], args[2])";
        QVERIFY(mock(nmPath, "AddMethod", working).isValid());
        QVERIFY(platform.turnOnInternet(reenabled).isSuccess);
        QCOMPARE(activeUuids(), QStringList({"leaving", "lo", "wifi", "wired"}));
        // Nothing remembered any more: nothing to switch on.
        QVERIFY(!platform.turnOnInternet(reenabled).isSuccess);
        QVERIFY(!reenabled);
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
        options.networkBackendFactory = [bus] {
            return std::make_unique<NetworkManagerBackend>(bus, 25000);
        };
        return options;
    }

    QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(nm, path, interface, method);
        message.setArguments(arguments);
        const QDBusMessage reply = m_bus->call(message);
        if (reply.type() != QDBusMessage::ReplyMessage)
            qWarning() << method << reply.errorMessage();
        return reply;
    }
    QVariant mock(const QString& path, const QString& method, const QVariantList& arguments) const
    {
        const QDBusMessage reply = call(path, mockInterface, method, arguments);
        return reply.type() == QDBusMessage::ReplyMessage ? QVariant(true) : QVariant();
    }

    QString addProfile(const QString& uuid, const QString& type) const
    {
        const QMap<QString, QVariantMap> settings{
            {"connection", {{"uuid", uuid}, {"type", type}, {"id", "name-" + uuid}}}};
        return qdbus_cast<QDBusObjectPath>(call(nmPath + "/Settings", nm + ".Settings",
                                                "AddConnection", {QVariant::fromValue(settings)})
                                               .arguments()
                                               .value(0))
            .path();
    }
    void activate(const QString& profile, const QString& name, uint state) const
    {
        call(nmPath, mockInterface, "AddActiveConnection",
             {QStringList(), profile, "/", name, state});
    }

    // The UUIDs of NetworkManager's active connections, sorted.
    QStringList activeUuids() const
    {
        QStringList uuids;
        const QDBusMessage list =
            call(nmPath, "org.freedesktop.DBus.Properties", "Get", {nm, "ActiveConnections"});
        const QDBusVariant paths = list.arguments().value(0).value<QDBusVariant>();
        for (const auto& path : qdbus_cast<QList<QDBusObjectPath>>(paths.variant())) {
            const QDBusMessage uuid = call(path.path(), "org.freedesktop.DBus.Properties", "Get",
                                           {nm + ".Connection.Active", "Uuid"});
            uuids << uuid.arguments().value(0).value<QDBusVariant>().variant().toString();
        }
        uuids.sort();
        return uuids;
    }

    // Every stored VPN connection's data, with its id under "id", read back over the bus.
    QList<QMap<QString, QString>> vpnSettings() const
    {
        QList<QMap<QString, QString>> found;
        const QDBusMessage list =
            call(nmPath + "/Settings", nm + ".Settings", "ListConnections", {});
        for (const auto& path : qdbus_cast<QList<QDBusObjectPath>>(list.arguments().value(0))) {
            const QDBusMessage reply =
                call(path.path(), nm + ".Settings.Connection", "GetSettings", {});
            const auto settings =
                qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().value(0));
            if (!settings.contains("vpn"))
                continue;
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

TAVERO_TEST_GUILESS_MAIN(TestNetworkManager)
#include "tst_networkmanager.moc"
