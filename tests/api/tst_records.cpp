#include "api/accountinfogettingresult.h"
#include "api/flagpicturesize.h"
#include "api/ipgettingresult.h"
#include "api/lastversiongettingresult.h"
#include "api/loginresult.h"
#include "api/logoutbroadcaster.h"
#include "api/operationresult.h"
#include "api/protocoltype.h"
#include "api/serverlistgettingresult.h"
#include "support/testmain.h"

#include <QSignalSpy>

class TestRecords : public QObject {
    Q_OBJECT
private slots:
    void freshResultsAreNotSetAndNeverSucceed()
    {
        const QVector<int> statuses{
            RequestResult().status,           LoginResult().status,
            IpGettingResult().status,         AccountInfoGettingResult().status,
            ServerListGettingResult().status, LastVersionGettingResult().status};
        for (const int status : statuses) {
            QCOMPARE(status, 5);
        }
        QVERIFY(!LoginResult().isOk());
    }

    void operationResultConstructors()
    {
        const OperationResult success;
        QVERIFY(success.isSuccess);
        QCOMPARE(success.code, OperationResult::General);
        QVERIFY(success.message.isEmpty());

        const OperationResult emptyText{QString()};
        QVERIFY(!emptyText.isSuccess);
        QCOMPARE(emptyText.code, OperationResult::General);

        const OperationResult byCode(OperationResult::NoInternet);
        QVERIFY(!byCode.isSuccess);
        QCOMPARE(int(byCode.code), 2);

        const OperationResult both("text", OperationResult::NoInternet);
        QVERIFY(!both.isSuccess);
        QCOMPARE(both.message, QString("text"));
        QCOMPARE(both.code, OperationResult::NoInternet);
    }

    void serverEqualityIsCountryNameAndHost()
    {
        VpnServerInformation a;
        a.countryId = 3;
        a.name = "nl-1";
        a.host = "nl-1.example.net";
        a.load = 10;
        VpnServerInformation b = a;
        b.load = 90;
        b.vpnPassword = "other";
        b.hasOvpnConfig = true;
        QVERIFY(a == b);

        VpnServerInformation otherCountry = a;
        otherCountry.countryId = 4;
        QVERIFY(a != otherCountry);
        VpnServerInformation otherHost = a;
        otherHost.host = "nl-2.example.net";
        QVERIFY(a != otherHost);
    }

    void vpnDataNeedsAllThreeCertificateTexts_data()
    {
        QTest::addColumn<QString>("ca");
        QTest::addColumn<QString>("pub");
        QTest::addColumn<QString>("prv");
        QTest::addColumn<bool>("expected");
        QTest::newRow("all") << "c"
                             << "p"
                             << "k" << true;
        QTest::newRow("no ca") << ""
                               << "p"
                               << "k" << false;
        QTest::newRow("no public key") << "c"
                                       << ""
                                       << "k" << false;
        QTest::newRow("no private key") << "c"
                                        << "p"
                                        << "" << false;
    }
    void vpnDataNeedsAllThreeCertificateTexts()
    {
        QFETCH(QString, ca);
        QFETCH(QString, pub);
        QFETCH(QString, prv);
        QFETCH(bool, expected);
        AccountInfoGettingResult account;
        account.caCertificate = ca;
        account.publicKey = pub;
        account.privateKey = prv;
        account.vpnUsername = "user"; // dial-up credentials do not count
        QCOMPARE(account.hasVPNData(), expected);
    }

    void protocolTextsPutIKEv2Last()
    {
        QCOMPARE(protocols::textualList(QFlags<ProtocolType>(31)),
                 QString("Open VPN TCP, Open VPN UDP, L2TP, PPTP, IKEv2"));
        QCOMPARE(protocols::textualList(OvpnUdp | IKEv2), QString("Open VPN UDP, IKEv2"));
        QCOMPARE(protocols::textualList(OvpnTcp | OvpnUdp), QString("Open VPN TCP, Open VPN UDP"));
        QCOMPARE(protocols::textualList({}), QString());
        QCOMPARE(protocols::displayText(Pptp), QString("PPTP"));
    }

    void singleFlagTest()
    {
        QVERIFY(protocols::isSingleFlag(IKEv2));
        QVERIFY(protocols::isSingleFlag(Pptp));
        QVERIFY(!protocols::isSingleFlag({}));
        QVERIFY(!protocols::isSingleFlag(OvpnTcp | OvpnUdp));
        QVERIFY(!protocols::isSingleFlag(QFlags<ProtocolType>(31)));
        QVERIFY(!protocols::isSingleFlag(QFlags<ProtocolType>(32))); // not one of ours
    }

    void flagSizeTexts()
    {
        QCOMPARE(flagPictureSizeText(FlagPictureSize::Large), QString("640x480"));
        QCOMPARE(flagPictureSizeText(FlagPictureSize::Small), QString("60x45"));
        QCOMPARE(flagPictureSizeText(static_cast<FlagPictureSize>(7)), QString("640x480"));
    }

    void logoutCarriesItsText()
    {
        LogoutBroadcaster broadcaster;
        QSignalSpy spy(&broadcaster, &LogoutBroadcaster::needLogout);
        broadcaster.emitLogout("Session expired");
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QString("Session expired"));
    }
};

TAVERO_TEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
