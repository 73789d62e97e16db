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
        const auto row = [](const char* name, const QStringList& arguments, Command command,
                            const QString& country = {}, const QString& errorPart = {}) {
            QTest::newRow(name) << arguments << command << country << errorPart;
        };
        const auto refused = [&](const char* name, const QStringList& arguments,
                                 const QString& errorPart) {
            row(name, arguments, Command::Help, {}, errorPart);
        };
        row("json after", {"status", "--json"}, Command::Status);
        row("country with =", {"--json", "connect", "--country=NL"}, Command::Connect, "NL");
        row("country", {"connect", "--country", "de"}, Command::Connect, "de");
        row("help wins", {"connect", "--help"}, Command::Help);
        row("version", {"--version"}, Command::Version);
        refused("unknown command", {"dance"}, "unknown command");
        refused("country without code", {"connect", "--country"}, "country code");
        refused("extra argument", {"status", "now"}, "unexpected argument");
        refused("nothing", {}, "no command");
        refused("unknown option", {"status", "--fast"}, "unknown option");
        refused("login without e-mail", {"login"}, "e-mail");
        refused("password as argument", {"login", "a@b.test", "secret"},
                "never from the command line");
        refused("password option", {"login", "a@b.test", "--password=secret"},
                "never from the command line");
        refused("country followed by option", {"connect", "--country", "--json"}, "country code");
        refused("country for another command", {"servers", "--country", "de"},
                "belongs to connect");
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
