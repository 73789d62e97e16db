#pragma once

#include <QString>
#include <QStringList>

namespace tavero::cli {

// The command line of tavero-cli:
//   tavero-cli [--json] login EMAIL
//   tavero-cli [--json] servers
//   tavero-cli [--json] connect [--country CODE]
//   tavero-cli [--json] status
//   tavero-cli [--json] logout
//   tavero-cli --help | --version
// Options may stand before or after the command. A password is never taken from the command line.
struct CliOptions {
    enum class Command { Help, Version, Login, Servers, Connect, Status, Logout };

    Command command = Command::Help;
    QString email;   // login
    QString country; // connect; empty: the current server
    bool json = false;

    // `arguments` without the program name. On failure returns false with `error` set to one
    // line saying what is wrong.
    static bool parse(const QStringList& arguments, CliOptions& options, QString& error);
    static QString usage();
};

} // namespace tavero::cli
