#include "cli/clioptions.h"
#include "support/testmain.h"

using tavero::cli::CliOptions;
using Command = CliOptions::Command;

Q_DECLARE_METATYPE(CliOptions::Command)

class TestCliOptions : public QObject {
    Q_OBJECT
private slots:
    // Rows with an error part are refused; a refused command line never repeats a password.
    void parse_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<Command>("command");
        QTest::addColumn<QString>("country");
        QTest::addColumn<QString>("errorPart");
        const Command none = Command::Help;
        QTest::newRow("json after") << QStringList{"status", "--json"} << Command::Status << ""
                                    << "";
        QTest::newRow("country with =")
            << QStringList{"--json", "connect", "--country=NL"} << Command::Connect << "NL"
            << "";
        QTest::newRow("help wins") << QStringList{"connect", "--help"} << Command::Help << ""
                                   << "";
        QTest::newRow("login") << QStringList{"login", "a@b.test"} << Command::Login << ""
                               << "";
        QTest::newRow("logout") << QStringList{"logout"} << Command::Logout << ""
                                << "";
        QTest::newRow("short help") << QStringList{"-h"} << Command::Help << ""
                                    << "";
        QTest::newRow("version") << QStringList{"--version"} << Command::Version << ""
                                 << "";
        QTest::newRow("servers") << QStringList{"servers"} << Command::Servers << ""
                                 << "";
        QTest::newRow("country") << QStringList{"connect", "--country", "de"} << Command::Connect
                                 << "de"
                                 << "";
        QTest::newRow("unknown command") << QStringList{"dance"} << none << ""
                                         << "unknown command";
        QTest::newRow("country without code") << QStringList{"connect", "--country"} << none << ""
                                              << "country code";
        QTest::newRow("extra argument") << QStringList{"status", "now"} << none << ""
                                        << "unexpected argument";
        QTest::newRow("nothing") << QStringList{} << none << ""
                                 << "no command";
        QTest::newRow("unknown option") << QStringList{"status", "--fast"} << none << ""
                                        << "unknown option";
        QTest::newRow("login without e-mail") << QStringList{"login"} << none << ""
                                              << "e-mail";
        QTest::newRow("password as argument")
            << QStringList{"login", "a@b.test", "secret"} << none << ""
            << "never from the command line";
        QTest::newRow("password option")
            << QStringList{"login", "a@b.test", "--password=secret"} << none << ""
            << "never from the command line";
        QTest::newRow("country followed by option")
            << QStringList{"connect", "--country", "--json"} << none << ""
            << "country code";
        QTest::newRow("country for another command")
            << QStringList{"servers", "--country", "de"} << none << ""
            << "belongs to connect";
    }
    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, errorPart);
        CliOptions options;
        QString error;
        QCOMPARE(CliOptions::parse(arguments, options, error), errorPart.isEmpty());
        QVERIFY2(error.contains(errorPart), qPrintable(error));
        QVERIFY(!error.contains(QLatin1String("secret")));
        if (errorPart.isEmpty()) {
            QTEST(options.command, "command");
            QTEST(options.country, "country");
            QCOMPARE(options.json, arguments.contains("--json"));
        }
    }
};

TAVERO_TEST_GUILESS_MAIN(TestCliOptions)
#include "tst_clioptions.moc"
