#include "platform/linux/linuxplatform.h"
#include "platform/linux/networkmanagerbackend.h"
#include "support/testmain.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMutex>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <algorithm>
#include <functional>
#include <memory>

using tavero::LinuxPlatform;
using tavero::NetworkManagerBackend;

namespace {

const QString nmService = QStringLiteral("org.freedesktop.NetworkManager");
const QString nmPath = QStringLiteral("/org/freedesktop/NetworkManager");

// Just enough of NetworkManager's D-Bus interface for the switch: the active connection list and
// their properties, deactivation, activation and the profile lookup by UUID. Used from the test
// thread and from the bus thread, hence the lock.
class FakeNetworkManager : public QDBusVirtualObject {
public:
    struct Profile {
        QString uuid;
        QString type;
        uint state = 0; // 0: not active; 1 activating, 2 activated, 3 deactivating
        QString activePath;
    };

    void addProfile(const QString& uuid, const QString& type, uint state)
    {
        const QMutexLocker locker(&m_mutex);
        m_profiles.append({uuid, type, 0, QString()});
        setState(m_profiles.last(), state);
    }
    void setActive(const QString& uuid, bool active)
    {
        const QMutexLocker locker(&m_mutex);
        for (Profile& profile : m_profiles) {
            if (profile.uuid == uuid)
                setState(profile, active ? 2 : 0);
        }
    }
    void removeProfile(const QString& uuid)
    {
        const QMutexLocker locker(&m_mutex);
        m_profiles.erase(std::remove_if(m_profiles.begin(), m_profiles.end(),
                                        [&](const Profile& p) { return p.uuid == uuid; }),
                         m_profiles.end());
    }
    void refuseActivationOf(const QString& uuid)
    {
        const QMutexLocker locker(&m_mutex);
        m_refused << uuid;
    }
    QStringList active() const
    {
        const QMutexLocker locker(&m_mutex);
        QStringList uuids;
        for (const Profile& profile : m_profiles) {
            if (profile.state != 0)
                uuids << profile.uuid;
        }
        return uuids;
    }
    // "Deactivate UUID" / "Activate UUID device specific" in the order received.
    QStringList calls() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_calls;
    }
    void clearCalls()
    {
        const QMutexLocker locker(&m_mutex);
        m_calls.clear();
    }

    QString introspect(const QString&) const override { return QString(); }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        const QMutexLocker locker(&m_mutex);
        connection.send(answer(message));
        return true;
    }

private:
    static QString settingsPath(int index)
    {
        return nmPath + "/Settings/" + QString::number(index);
    }
    void setState(Profile& profile, uint state)
    {
        profile.state = state;
        profile.activePath =
            state == 0 ? QString() : nmPath + "/ActiveConnection/" + QString::number(++m_serial);
    }
    int activeIndex(const QString& path) const
    {
        for (int i = 0; i < m_profiles.size(); ++i) {
            if (m_profiles[i].state != 0 && m_profiles[i].activePath == path)
                return i;
        }
        return -1;
    }

    QDBusMessage answer(const QDBusMessage& message)
    {
        const QString member = message.member();
        const QVariantList args = message.arguments();
        const QString pathArgument = args.value(0).value<QDBusObjectPath>().path();
        if (member == QLatin1String("Get") &&
            args.value(1) == QStringLiteral("ActiveConnections")) {
            QList<QDBusObjectPath> paths;
            for (const Profile& profile : qAsConst(m_profiles)) {
                if (profile.state != 0)
                    paths << QDBusObjectPath(profile.activePath);
            }
            return message.createReply(
                QVariant::fromValue(QDBusVariant(QVariant::fromValue(paths))));
        }
        if (member == QLatin1String("GetAll")) {
            const int i = activeIndex(message.path());
            if (i < 0)
                return message.createErrorReply(QDBusError::UnknownObject, message.path());
            const Profile& profile = m_profiles[i];
            return message.createReply(
                QVariant(QVariantMap{{"Uuid", profile.uuid},
                                     {"Id", "name-" + profile.uuid},
                                     {"Type", profile.type},
                                     {"State", QVariant::fromValue(profile.state)}}));
        }
        if (member == QLatin1String("GetConnectionByUuid")) {
            for (int i = 0; i < m_profiles.size(); ++i) {
                if (m_profiles[i].uuid == args.value(0).toString())
                    return message.createReply(
                        QVariant::fromValue(QDBusObjectPath(settingsPath(i))));
            }
            return message.createErrorReply(
                "org.freedesktop.NetworkManager.Settings.InvalidConnection", "No such UUID.");
        }
        if (member == QLatin1String("DeactivateConnection")) {
            const int i = activeIndex(pathArgument);
            if (i < 0)
                return message.createErrorReply(
                    "org.freedesktop.NetworkManager.ConnectionNotActive", pathArgument);
            m_calls << "Deactivate " + m_profiles[i].uuid;
            setState(m_profiles[i], 0);
            return message.createReply();
        }
        if (member == QLatin1String("ActivateConnection")) {
            for (int i = 0; i < m_profiles.size(); ++i) {
                if (settingsPath(i) != pathArgument)
                    continue;
                Profile& profile = m_profiles[i];
                m_calls << QStringLiteral("Activate %1 %2 %3")
                               .arg(profile.uuid, args.value(1).value<QDBusObjectPath>().path(),
                                    args.value(2).value<QDBusObjectPath>().path());
                if (m_refused.contains(profile.uuid))
                    return message.createErrorReply("org.freedesktop.NetworkManager.UnknownDevice",
                                                    "No suitable device found.");
                setState(profile, 2);
                return message.createReply(
                    QVariant::fromValue(QDBusObjectPath(profile.activePath)));
            }
            return message.createErrorReply(QDBusError::InvalidArgs, pathArgument);
        }
        return message.createErrorReply(QDBusError::UnknownMethod, member);
    }

    mutable QMutex m_mutex;
    QVector<Profile> m_profiles;
    QStringList m_refused;
    QStringList m_calls;
    int m_serial = 0;
};

} // namespace

// The NetworkManager switch against a stand-in NetworkManager on a private message bus.
class TestNetworkManagerBackend : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        if (daemon.isEmpty())
            QSKIP("needs dbus-daemon for a private message bus");
        m_daemon.start(daemon, {"--session", "--nofork", "--nopidfile", "--print-address=1"});
        QVERIFY(m_daemon.waitForStarted());
        QVERIFY(m_daemon.waitForReadyRead(10000));
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        QVERIFY2(m_address.startsWith(QLatin1String("unix:")), qPrintable(m_address));
        m_serverThread.start();
        m_serverContext.moveToThread(&m_serverThread);
    }

    void cleanupTestCase()
    {
        if (m_serverThread.isRunning()) {
            onServerThread(
                [&] { m_serverContext.moveToThread(QCoreApplication::instance()->thread()); });
            m_serverThread.quit();
            m_serverThread.wait();
        }
        if (m_daemon.state() != QProcess::NotRunning) {
            m_daemon.terminate();
            m_daemon.waitForFinished(5000);
        }
    }

    void init()
    {
        // The stand-in lives, is registered and answers on its own thread, so the blocking calls
        // made by the code under test on this thread get their replies.
        bool registered = false;
        onServerThread([&] {
            m_fake = std::make_unique<FakeNetworkManager>();
            m_server = QDBusConnection::connectToBus(m_address, QStringLiteral("server"));
            registered =
                m_server.isConnected() &&
                m_server.registerVirtualObject(nmPath, m_fake.get(), QDBusConnection::SubPath) &&
                m_server.registerService(nmService);
        });
        QVERIFY(registered);
        m_client = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(m_address, QStringLiteral("client")));
        QVERIFY(m_client->isConnected());
    }

    void cleanup()
    {
        m_client.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("client"));
        onServerThread([&] {
            m_server.unregisterService(nmService);
            m_server.unregisterObject(nmPath, QDBusConnection::UnregisterTree);
            m_server = QDBusConnection(QString());
            QDBusConnection::disconnectFromBus(QStringLiteral("server"));
            m_fake.reset();
        });
    }

    // Off skips loopback and connections already leaving; on brings back only what is still
    // off and still exists, and a refused activation is reported but forgets the list all the same.
    void switchOffAndOn()
    {
        m_fake->addProfile("lo-uuid", "loopback", 2);
        m_fake->addProfile("wired-uuid", "802-3-ethernet", 2);
        m_fake->addProfile("wifi-uuid", "802-11-wireless", 2);
        m_fake->addProfile("vpn-uuid", "vpn", 1);
        m_fake->addProfile("leaving-uuid", "802-3-ethernet", 3);
        m_fake->addProfile("spare-uuid", "802-3-ethernet", 0);
        LinuxPlatform platform(options());

        const OperationResult off = platform.turnOffInternet();
        QVERIFY2(off.isSuccess, qPrintable(off.message));
        QCOMPARE(m_fake->calls(), QStringList({"Deactivate wired-uuid", "Deactivate wifi-uuid",
                                               "Deactivate vpn-uuid"}));
        QCOMPARE(m_fake->active(), QStringList({"lo-uuid", "leaving-uuid"}));
        QCOMPARE(platform.turnOffInternet().message, "warning.failed_to_turn_off_the_internet");

        m_fake->clearCalls();
        m_fake->setActive("wifi-uuid", true); // the user brought it back already
        m_fake->removeProfile("vpn-uuid");    // and deleted this one
        bool reenabled = false;
        const OperationResult on = platform.turnOnInternet(reenabled);
        QVERIFY2(on.isSuccess, qPrintable(on.message));
        QVERIFY(reenabled);
        QCOMPARE(m_fake->calls(), QStringList({"Activate wired-uuid / /"}));
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
        QVERIFY(!m_fake->active().contains("spare-uuid"));

        m_fake->refuseActivationOf("wired-uuid");
        m_fake->refuseActivationOf("wifi-uuid");
        QVERIFY(platform.turnOffInternet().isSuccess);
        const OperationResult refused = platform.turnOnInternet(reenabled);
        QCOMPARE(refused.message, "warning.failed_to_turn_on_the_internet");
        QVERIFY2(reenabled, "an attempt was made");
        // Kept, so the next restore (or the next start) tries it again.
        QVERIFY(platform.haveDisabledNetDevicesByKillSwitch());
    }

    void absentNetworkManagerIsUnreachable()
    {
        m_fake->addProfile("wired-uuid", "802-3-ethernet", 2);
        QVERIFY(NetworkManagerBackend::isRunning(*m_client));
        onServerThread([&] { m_server.unregisterService(nmService); });
        QVERIFY(!NetworkManagerBackend::isRunning(*m_client));

        LinuxPlatform platform(options());
        QCOMPARE(platform.turnOffInternet().message,
                 "warning.could_not_connect_to_the_connection_manager_library");
        QVERIFY(m_fake->calls().isEmpty());
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
    }

private:
    void onServerThread(const std::function<void()>& work)
    {
        QMetaObject::invokeMethod(&m_serverContext, work, Qt::BlockingQueuedConnection);
    }

    LinuxPlatform::Options options() const
    {
        LinuxPlatform::Options options;
        const QDBusConnection bus = *m_client;
        options.networkBackendFactory = [bus] {
            return std::make_unique<NetworkManagerBackend>(bus, 25000);
        };
        return options;
    }

    QProcess m_daemon;
    QString m_address;
    QThread m_serverThread;
    QObject m_serverContext;
    std::unique_ptr<FakeNetworkManager> m_fake;
    QDBusConnection m_server{QString()};
    std::unique_ptr<QDBusConnection> m_client;
};

TAVERO_TEST_GUILESS_MAIN(TestNetworkManagerBackend)
#include "tst_networkmanagerbackend.moc"
