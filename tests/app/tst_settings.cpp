#include "app/settings.h"
#include "support/testmain.h"

#include <QSettings>

using tavero::Settings;

namespace {
QSettings store()
{
    return {QSettings::NativeFormat, QSettings::UserScope, "TAVERO", "TAVERO"};
}
} // namespace

class TestSettings : public QObject {
    Q_OBJECT
private slots:
    void init() { tavero::test::TestEnvironment::clearSettings(); }

    // What another version (or a hand edit) left in the store is read as the values it means.
    void storedProtocolTypesAreTakenBitForBit_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<int>("expected");
        QTest::newRow("zero is the empty set, not the default") << QVariant(0) << 0;
        QTest::newRow("six is TCP and UDP") << QVariant(6) << int(OvpnTcp | OvpnUdp);
        QTest::newRow("text that is a number") << QVariant("16") << 16;
        QTest::newRow("text that is not a number") << QVariant("abc") << 0;
    }
    void storedProtocolTypesAreTakenBitForBit()
    {
        QFETCH(QVariant, stored);
        QFETCH(int, expected);
        store().setValue("protocol_type", stored);
        Settings settings;
        QCOMPARE(int(settings.protocolTypes()), expected);
    }

    void valuesGoThroughTheVariantConversions()
    {
        {
            QSettings raw = store();
            raw.setValue("is_kill_switch", "true");
            raw.setValue("is_first_run", "false");
            raw.setValue("server_name", QStringList{"a", "b"});
        }
        Settings settings;
        QVERIFY(settings.isKillSwitch());
        QVERIFY(!settings.isFirstRun());
        // A list is not a string: it converts to the null string.
        QCOMPARE(settings.serverName(), QString());
    }
};

TAVERO_TEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
