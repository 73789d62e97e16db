#include "cli/clioptions.h"
#include "support/testmain.h"

using tavero::cli::CliOptions;
using Command = CliOptions::Command;

Q_DECLARE_METATYPE(CliOptions::Command)

class TestCliOptions : public QObject {
    Q_OBJECT
private slots:
    void accepts_data();
    void accepts();
    void refuses_data();
    void refuses();
};

void TestCliOptions::accepts_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<Command>("command");
    QTest::addColumn<QString>("email");
    QTest::addColumn<QString>("country");
    QTest::addColumn<bool>("json");

    QTest::newRow("login") << QStringList{"login", "a@b.test"} << Command::Login
                           << QStringLiteral("a@b.test") << QString() << false;
    QTest::newRow("json before") << QStringList{"--json", "servers"} << Command::Servers
                                 << QString() << QString() << true;
    QTest::newRow("json after") << QStringList{"status", "--json"} << Command::Status << QString()
                                << QString() << true;
    QTest::newRow("connect") << QStringList{"connect"} << Command::Connect << QString() << QString()
                             << false;
    QTest::newRow("connect to country")
        << QStringList{"connect", "--country", "de"} << Command::Connect << QString()
        << QStringLiteral("de") << false;
    QTest::newRow("country with =")
        << QStringList{"--json", "connect", "--country=NL"} << Command::Connect << QString()
        << QStringLiteral("NL") << true;
    QTest::newRow("logout") << QStringList{"logout"} << Command::Logout << QString() << QString()
                            << false;
    QTest::newRow("help wins") << QStringList{"connect", "--help"} << Command::Help << QString()
                               << QString() << false;
    QTest::newRow("short help") << QStringList{"-h"} << Command::Help << QString() << QString()
                                << false;
    QTest::newRow("version") << QStringList{"--version"} << Command::Version << QString()
                             << QString() << false;
}

void TestCliOptions::accepts()
{
    QFETCH(QStringList, arguments);
    QFETCH(Command, command);
    QFETCH(QString, email);
    QFETCH(QString, country);
    QFETCH(bool, json);

    CliOptions options;
    QString error;
    QVERIFY2(CliOptions::parse(arguments, options, error), qPrintable(error));
    QCOMPARE(options.command, command);
    QCOMPARE(options.email, email);
    QCOMPARE(options.country, country);
    QCOMPARE(options.json, json);
}

void TestCliOptions::refuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("errorPart");

    QTest::newRow("nothing") << QStringList{} << QStringLiteral("no command");
    QTest::newRow("unknown command") << QStringList{"dance"} << QStringLiteral("unknown command");
    QTest::newRow("unknown option")
        << QStringList{"status", "--fast"} << QStringLiteral("unknown option");
    QTest::newRow("login without e-mail") << QStringList{"login"} << QStringLiteral("e-mail");
    QTest::newRow("password as argument") << QStringList{"login", "a@b.test", "secret"}
                                          << QStringLiteral("never from the command line");
    QTest::newRow("password option") << QStringList{"login", "a@b.test", "--password=secret"}
                                     << QStringLiteral("never from the command line");
    QTest::newRow("country without code")
        << QStringList{"connect", "--country"} << QStringLiteral("country code");
    QTest::newRow("country followed by option")
        << QStringList{"connect", "--country", "--json"} << QStringLiteral("country code");
    QTest::newRow("country for another command")
        << QStringList{"servers", "--country", "de"} << QStringLiteral("belongs to connect");
    QTest::newRow("extra argument")
        << QStringList{"status", "now"} << QStringLiteral("unexpected argument");
}

void TestCliOptions::refuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, errorPart);

    CliOptions options;
    QString error;
    QVERIFY(!CliOptions::parse(arguments, options, error));
    QVERIFY2(error.contains(errorPart), qPrintable(error));
    // A refused command line never carries a password anywhere.
    QVERIFY(!error.contains(QLatin1String("secret")));
}

TAVERO_TEST_GUILESS_MAIN(TestCliOptions)
#include "tst_clioptions.moc"
