#include "platform/linux/interfacebackend.h"
#include "platform/linux/linuxplatform.h"
#include "support/networknamespace.h"
#include "support/testmain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <memory>

using tavero::InterfaceBackend;
using tavero::LinuxPlatform;
using tavero::test::NetworkNamespace;

namespace {

// Interface name -> administratively up, from `ip -j link show`.
QMap<QString, bool> linkStates(const QString& json)
{
    QMap<QString, bool> states;
    const QJsonArray links = QJsonDocument::fromJson(json.toUtf8()).array();
    for (const QJsonValue& link : links) {
        const QJsonObject object = link.toObject();
        states.insert(
            object.value(QStringLiteral("ifname")).toString(),
            object.value(QStringLiteral("flags")).toArray().contains(QStringLiteral("UP")));
    }
    return states;
}

// "destination via gateway dev device" for each route of `ip -j route show`.
QStringList routes(const QString& json)
{
    QStringList lines;
    const QJsonArray table = QJsonDocument::fromJson(json.toUtf8()).array();
    for (const QJsonValue& route : table) {
        const QJsonObject object = route.toObject();
        QString line = object.value(QStringLiteral("dst")).toString();
        if (object.contains(QStringLiteral("gateway")))
            line += QStringLiteral(" via ") + object.value(QStringLiteral("gateway")).toString();
        lines << line + QStringLiteral(" dev ") + object.value(QStringLiteral("dev")).toString();
    }
    return lines;
}

} // namespace

// The interface switch, for real, inside a network namespace this test makes: never on the host.
class TestNetworkSwitchNamespace : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        const QString reason = NetworkNamespace::unavailableReason();
        if (!reason.isEmpty())
            QSKIP(qPrintable(reason));
        QString hostLinks;
        QVERIFY(NetworkNamespace::hostIp({"-j", "link", "show"}, &hostLinks));
        m_hostLinks = linkStates(hostLinks);
        QVERIFY(!m_hostLinks.isEmpty());

        m_namespace = std::make_unique<NetworkNamespace>(QStringLiteral("tavero-switch"));
        QVERIFY2(m_namespace->error().isEmpty(), qPrintable(m_namespace->error()));
        const QList<QStringList> setup{
            {"link", "set", "lo", "up"},
            {"link", "add", "a0", "type", "veth", "peer", "name", "a1"},
            {"link", "add", "b0", "type", "veth", "peer", "name", "b1"},
            {"addr", "add", "10.200.0.1/24", "dev", "a0"},
            {"addr", "add", "10.200.0.2/24", "dev", "a1"},
            {"addr", "add", "fd00:200::1/64", "dev", "a0", "nodad"},
            {"link", "set", "a0", "up"},
            {"link", "set", "a1", "up"},
            {"link", "set", "b0", "up"}, // its peer b1 stays down
            {"route", "add", "10.201.0.0/16", "via", "10.200.0.2", "dev", "a0", "proto", "static"},
            {"route", "add", "default", "via", "10.200.0.2", "dev", "a0"},
        };
        for (const QStringList& command : setup)
            QVERIFY2(m_namespace->ip(command), qPrintable(command.join(' ')));
    }

    void cleanupTestCase()
    {
        m_namespace.reset();
        if (m_hostLinks.isEmpty())
            return;
        QString hostLinks;
        QVERIFY(NetworkNamespace::hostIp({"-j", "link", "show"}, &hostLinks));
        QCOMPARE(linkStates(hostLinks), m_hostLinks);
    }

    void switchOffAndOnActOnExactlyTheRememberedInterfaces()
    {
        LinuxPlatform::Options options;
        options.networkBackendFactory = [] { return std::make_unique<InterfaceBackend>(); };
        LinuxPlatform platform(std::move(options));

        OperationResult off;
        OperationResult secondOff;
        QVERIFY(m_namespace->run([&] {
            off = platform.turnOffInternet();
            secondOff = platform.turnOffInternet();
        }));
        QVERIFY2(off.isSuccess, qPrintable(off.message));
        QStringList remembered = platform.rememberedConnections();
        remembered.sort();
        QCOMPARE(remembered, QStringList({"a0", "a1", "b0"}));
        QVERIFY(platform.haveDisabledNetDevicesByKillSwitch());
        QCOMPARE(links(),
                 (QMap<QString, bool>{
                     {"lo", true}, {"a0", false}, {"a1", false}, {"b0", false}, {"b1", false}}));
        QVERIFY2(!secondOff.isSuccess, "nothing was left to switch off");
        QCOMPARE(secondOff.message, QStringLiteral("warning.failed_to_turn_off_the_internet"));
        QCOMPARE(platform.rememberedConnections().size(), 3);

        bool reenabled = false;
        OperationResult on;
        bool reenabledAgain = true;
        OperationResult onAgain;
        QVERIFY(m_namespace->run([&] {
            on = platform.turnOnInternet(reenabled);
            onAgain = platform.turnOnInternet(reenabledAgain);
        }));
        QVERIFY2(on.isSuccess, qPrintable(on.message));
        QVERIFY(reenabled);
        QCOMPARE(links(),
                 (QMap<QString, bool>{
                     {"lo", true}, {"a0", true}, {"a1", true}, {"b0", true}, {"b1", false}}));
        QVERIFY(!platform.haveDisabledNetDevicesByKillSwitch());
        QString table;
        QVERIFY(m_namespace->ip({"-j", "route", "show"}, &table));
        const QStringList restored = routes(table);
        QVERIFY2(restored.contains("default via 10.200.0.2 dev a0"), qPrintable(table));
        QVERIFY2(restored.contains("10.201.0.0/16 via 10.200.0.2 dev a0"), qPrintable(table));

        QVERIFY(!onAgain.isSuccess);
        QCOMPARE(onAgain.message, QStringLiteral("warning.failed_to_turn_on_the_internet"));
        QVERIFY(!reenabledAgain);
    }

private:
    QMap<QString, bool> links() const
    {
        QString json;
        if (!m_namespace->ip({"-j", "link", "show"}, &json))
            return {};
        return linkStates(json);
    }

    std::unique_ptr<NetworkNamespace> m_namespace;
    QMap<QString, bool> m_hostLinks;
};

TAVERO_TEST_GUILESS_MAIN(TestNetworkSwitchNamespace)
#include "tst_networkswitchnamespace.moc"
