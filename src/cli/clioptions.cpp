#include "cli/clioptions.h"

#include <QHash>

namespace tavero::cli {
namespace {

const QHash<QString, CliOptions::Command>& commandNames()
{
    static const QHash<QString, CliOptions::Command> names{
        {QStringLiteral("login"), CliOptions::Command::Login},
        {QStringLiteral("servers"), CliOptions::Command::Servers},
        {QStringLiteral("connect"), CliOptions::Command::Connect},
        {QStringLiteral("status"), CliOptions::Command::Status},
        {QStringLiteral("logout"), CliOptions::Command::Logout},
    };
    return names;
}

} // namespace

bool CliOptions::parse(const QStringList& arguments, CliOptions& options, QString& error)
{
    options = CliOptions();
    bool haveCommand = false;
    bool wantsHelp = false;
    bool wantsVersion = false;
    bool haveCountry = false;
    QStringList positional;

    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == QLatin1String("--json")) {
            options.json = true;
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            wantsHelp = true;
        } else if (argument == QLatin1String("--version")) {
            wantsVersion = true;
        } else if (argument == QLatin1String("--country") ||
                   argument.startsWith(QLatin1String("--country="))) {
            QString value;
            if (argument.startsWith(QLatin1String("--country="))) {
                value = argument.mid(int(sizeof("--country=")) - 1);
            } else if (i + 1 < arguments.size()) {
                value = arguments[++i];
            } else {
                error = QStringLiteral("--country needs a country code");
                return false;
            }
            if (value.trimmed().isEmpty() || value.startsWith(QLatin1Char('-'))) {
                error = QStringLiteral("--country needs a country code");
                return false;
            }
            options.country = value.trimmed();
            haveCountry = true;
        } else if (argument.startsWith(QLatin1String("--password"))) {
            error = QStringLiteral("the password is read from standard input or a prompt, never "
                                   "from the command line");
            return false;
        } else if (argument.startsWith(QLatin1Char('-')) && argument != QLatin1String("-")) {
            error = QStringLiteral("unknown option %1").arg(argument);
            return false;
        } else if (!haveCommand) {
            const auto command = commandNames().constFind(argument);
            if (command == commandNames().cend()) {
                error = QStringLiteral("unknown command %1").arg(argument);
                return false;
            }
            options.command = *command;
            haveCommand = true;
        } else {
            positional << argument;
        }
    }

    if (wantsHelp) {
        options.command = Command::Help;
        return true;
    }
    if (wantsVersion) {
        options.command = Command::Version;
        return true;
    }
    if (!haveCommand) {
        error = QStringLiteral("no command given");
        return false;
    }
    if (haveCountry && options.command != Command::Connect) {
        error = QStringLiteral("--country belongs to connect");
        return false;
    }
    if (options.command == Command::Login) {
        if (positional.isEmpty() || positional.first().trimmed().isEmpty()) {
            error = QStringLiteral("login needs an e-mail address");
            return false;
        }
        if (positional.size() > 1) {
            error = QStringLiteral("the password is read from standard input or a prompt, never "
                                   "from the command line");
            return false;
        }
        options.email = positional.first().trimmed();
        return true;
    }
    if (!positional.isEmpty()) {
        error = QStringLiteral("unexpected argument %1").arg(positional.first());
        return false;
    }
    return true;
}

QString CliOptions::usage()
{
    return QStringLiteral(
        "Usage: tavero-cli [--json] COMMAND\n"
        "\n"
        "Commands:\n"
        "  login EMAIL               log in; the password is read from standard input, or\n"
        "                            asked for when standard input is a terminal\n"
        "  servers                   countries with the load of their best server,\n"
        "                            recommended countries first\n"
        "  connect [--country CODE]  connect (to the best server of CODE) and keep the\n"
        "                            tunnel until SIGINT, SIGTERM or SIGHUP; prints every change\n"
        "  status                    log-in, chosen server and whether traffic is protected\n"
        "  logout                    forget the stored log-in (the e-mail address stays)\n"
        "\n"
        "Options:\n"
        "  --json                    one JSON object per line instead of text\n"
        "  --help, --version\n"
        "\n"
        "Exit codes: 0 success, 1 failure, 2 usage, 3 not logged in, 4 no connection to\n"
        "the service, 5 log-in refused, 6 connecting failed, 7 no available server in the\n"
        "country, 8 another tavero-cli command is managing the tunnel, 9 traffic not\n"
        "protected (status).\n");
}

} // namespace tavero::cli
