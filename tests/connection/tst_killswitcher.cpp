#include "app/settings.h"
#include "connection/killswitcher.h"
#include "support/fakeserverapi.h"
#include "support/testmain.h"
#include "support/testplatform.h"

#include <memory>

using tavero::KillSwitcher;
using tavero::Settings;
using tavero::test::FakeServerApi;
using tavero::test::TestPlatform;

class TestKillSwitcher : public QObject {
    Q_OBJECT

    std::unique_ptr<FakeServerApi> m_api;
    std::unique_ptr<TestPlatform> m_platform;
    std::unique_ptr<Settings> m_settings;
    qint64 m_nowMs = 0;

    std::unique_ptr<KillSwitcher> makeSwitcher()
    {
        return std::make_unique<KillSwitcher>(*m_api, *m_platform, *m_settings,
                                              [this] { return m_nowMs; });
    }

private slots:
    void init()
    {
        tavero::test::TestEnvironment::clearSettings();
        m_api = std::make_unique<FakeServerApi>();
        m_platform = std::make_unique<TestPlatform>();
        m_settings = std::make_unique<Settings>();
        m_nowMs = 0;
    }

    // Each probe takes `probeMs`; the network is back at probe `backAt` (0: never). A limit of
    // 15 s is not over at 15 whole seconds: the probe at 16 s gives up.
    void restoreWaitsForConnectivity_data()
    {
        QTest::addColumn<int>("limit");
        QTest::addColumn<int>("probeMs");
        QTest::addColumn<int>("backAt");
        QTest::addColumn<int>("probes");
        QTest::newRow("back at the third probe") << 30 << 1000 << 3 << 3;
        QTest::newRow("never back") << 15 << 4000 << 0 << 4;
    }
    void restoreWaitsForConnectivity()
    {
        QFETCH(int, limit);
        QFETCH(int, probeMs);
        QFETCH(int, backAt);
        QFETCH(int, probes);
        m_settings->setKillSwitch(true);
        auto switcher = makeSwitcher();
        QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
        switcher->stopInternet();
        m_api->internet = false;
        m_api->onCall("isThereInternet", [&] {
            m_nowMs += probeMs;
            m_api->internet = backAt > 0 && m_api->calls("isThereInternet") >= backAt;
        });
        if (backAt == 0)
            QTest::ignoreMessage(QtWarningMsg, "Internet started after killswitch");
        QCOMPARE(switcher->startInternet(limit), backAt > 0);
        QCOMPARE(m_api->calls("isThereInternet"), probes);
        QCOMPARE(switcher->state(), KillSwitcher::InternetOn);
        QVERIFY(!m_platform->isNetworkOff());
        // Once restored, later calls answer at once without the platform.
        QVERIFY(switcher->startInternet(limit));
        QCOMPARE(m_platform->callCount("turnOnInternet"), 1);
    }

    void nestedRestoreDuringTheWaitReturnsAtOnce()
    {
        m_settings->setKillSwitch(true);
        auto switcher = makeSwitcher();
        QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
        switcher->stopInternet();
        bool nested = false;
        m_api->onCall("isThereInternet", [&] {
            if (m_api->calls("isThereInternet") == 1)
                nested = switcher->startInternet(30); // a user action during the wait
        });
        QVERIFY(switcher->startInternet(30));
        QVERIFY(nested);
        QCOMPARE(m_platform->callCount("turnOnInternet"), 1);
    }

    // The state follows what the platform reports it really switched: a cut that switched nothing
    // is no cut; a restore that left connections off is reported, keeps the state and is tried
    // again, by the next restore as by the end of the program.
    void stateFollowsWhatThePlatformDid()
    {
        m_settings->setKillSwitch(true);
        auto switcher = makeSwitcher();
        m_platform->queueResult("turnOffInternet", OperationResult(QString("denied")));
        m_platform->queueAnswer("haveDisabledNetDevicesByKillSwitch", false);
        QTest::ignoreMessage(QtCriticalMsg, "The kill switch could not cut the network: denied");
        switcher->stopInternet();
        QVERIFY(!switcher->isInternetOff());

        QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
        switcher->stopInternet();
        QVERIFY(switcher->isInternetOff());
        m_platform->queueAnswer("haveDisabledNetDevicesByKillSwitch", true);
        const QRegularExpression notRestored("^Could not switch the network back on");
        QTest::ignoreMessage(QtCriticalMsg, notRestored);
        QVERIFY(!switcher->startInternet(30));
        QVERIFY(switcher->isInternetOff());
        QVERIFY(!switcher->canInternetOff());
        switcher->startInternet(30);
        QCOMPARE(m_platform->callCount("turnOnInternet"), 2);
        QCOMPARE(switcher->state(), KillSwitcher::InternetOn);

        QTest::ignoreMessage(QtWarningMsg, "Internet stopped by killswitch");
        switcher->stopInternet();
        for (int i = 0; i < 3; ++i)
            m_platform->queueAnswer("haveDisabledNetDevicesByKillSwitch", true);
        QTest::ignoreMessage(QtCriticalMsg, "The network connections switched off by the kill "
                                            "switch could not be switched on");
        switcher.reset();
        QCOMPARE(m_platform->callCount("turnOnNetDevices"), 3);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestKillSwitcher)
#include "tst_killswitcher.moc"
