#include "api/accountinfogettingresult.h"
#include "api/flagpicturesize.h"
#include "api/ipgettingresult.h"
#include "api/lastversiongettingresult.h"
#include "api/loginresult.h"
#include "api/operationresult.h"
#include "api/protocoltype.h"
#include "api/serverlistgettingresult.h"
#include "support/testmain.h"

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
        QVERIFY(OperationResult().isSuccess);
        QVERIFY(!OperationResult(QString()).isSuccess); // an empty text is still a failure
        const OperationResult both("text", OperationResult::NoInternet);
        QVERIFY(!both.isSuccess);
        QCOMPARE(int(both.code), 2);
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

    void vpnDataNeedsAllThreeCertificateTexts()
    {
        // -1: nothing missing; otherwise the index of the one empty text.
        for (int missing = -1; missing < 3; ++missing) {
            AccountInfoGettingResult account;
            account.caCertificate = missing == 0 ? QString() : "c";
            account.publicKey = missing == 1 ? QString() : "p";
            account.privateKey = missing == 2 ? QString() : "k";
            account.vpnUsername = "user"; // dial-up credentials do not count
            QVERIFY2(account.hasVPNData() == (missing == -1), qPrintable(QString::number(missing)));
        }
    }

    void protocolAndFlagSizeTexts()
    {
        QCOMPARE(protocols::textualList(QFlags<ProtocolType>(31)),
                 QString("Open VPN TCP, Open VPN UDP, L2TP, PPTP, IKEv2"));
        QCOMPARE(protocols::textualList(OvpnUdp | IKEv2), QString("Open VPN UDP, IKEv2"));
        QCOMPARE(protocols::textualList({}), QString());
        QVERIFY(protocols::isSingleFlag(Pptp));
        QVERIFY(!protocols::isSingleFlag(OvpnTcp | OvpnUdp));
        QVERIFY(!protocols::isSingleFlag(QFlags<ProtocolType>(32))); // not one of ours
        QCOMPARE(flagPictureSizeText(FlagPictureSize::Small), QString("60x45"));
        QCOMPARE(flagPictureSizeText(static_cast<FlagPictureSize>(7)), QString("640x480"));
    }
};

TAVERO_TEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
