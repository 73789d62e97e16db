#pragma once

#include <QString>
#include <cstdio>

namespace tavero::cli {

// Reads the log-in password: from a terminal with a prompt and without echo, otherwise the first
// line of the input (so scripts can pipe it in). Never from the command line or the environment.
class PasswordReader {
public:
    // `input` is normally stdin; `prompt` goes to `promptStream` only when `input` is a terminal.
    explicit PasswordReader(std::FILE* input = stdin, std::FILE* promptStream = stderr);

    // False when nothing could be read (end of input, read error); the line ending is dropped.
    bool read(QString& password);

private:
    std::FILE* m_input;
    std::FILE* m_promptStream;
};

} // namespace tavero::cli
