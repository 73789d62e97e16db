#include "manager/utils.h"
#include "support/testmain.h"

class TestProtocolChoice : public QObject {
    Q_OBJECT
private slots:
    void isOneFlagSetted_data()
    {
        QTest::addColumn<quint64>("value");
        QTest::addColumn<bool>("one");
        QTest::newRow("zero") << quint64(0) << false;
        QTest::newRow("1") << quint64(1) << true;
        QTest::newRow("16") << quint64(16) << true;
        QTest::newRow("3") << quint64(3) << false;
        QTest::newRow("6") << quint64(6) << false;
        QTest::newRow("31") << quint64(31) << false;
        QTest::newRow("top bit") << (quint64(1) << 63) << true;
        QTest::newRow("top two bits") << (quint64(3) << 62) << false;
    }
    void isOneFlagSetted()
    {
        QFETCH(quint64, value);
        QFETCH(bool, one);
        QCOMPARE(utils::isOneFlagSetted(value), one);
    }

    void usableProtocolTypes_data()
    {
        QTest::addColumn<int>("stored");
        QTest::addColumn<int>("usable");
        QTest::newRow("empty becomes all") << 0 << 31;
        QTest::newRow("two protocols become all") << int(OvpnTcp | OvpnUdp) << 31;
        QTest::newRow("four protocols become all") << 15 << 31;
        QTest::newRow("one protocol stays") << int(OvpnUdp) << int(OvpnUdp);
        QTest::newRow("IKEv2 alone stays") << int(IKEv2) << int(IKEv2);
        QTest::newRow("PPTP alone stays") << int(Pptp) << int(Pptp);
        QTest::newRow("all stay") << 31 << 31;
        QTest::newRow("unknown single bit becomes all") << 32 << 31;
        QTest::newRow("all plus unknown becomes all") << 63 << 31;
    }
    void usableProtocolTypes()
    {
        QFETCH(int, stored);
        QFETCH(int, usable);
        QCOMPARE(int(utils::usableProtocolTypes(QFlags<ProtocolType>(stored))), usable);
    }
};

TAVERO_TEST_GUILESS_MAIN(TestProtocolChoice)
#include "tst_protocolchoice.moc"
