#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

namespace tavero {

// The environment a copy of the client starts with, across an elevation.
//
// pkexec clears the environment of the copy it starts, so the elevating copy hands over what the
// elevated one needs (the display, the user's home and configuration place, the client's own
// switches) as "--env=NAME=VALUE" arguments, which the elevated copy puts back first thing. The
// service and trust overrides (TAVERO_API_URL, TAVERO_IPINFO_URL, TAVERO_PROBE_URL, TAVERO_CA_FILE,
// TAVERO_UPDATE_FILE) are never handed over this way: anything able to set the user's environment
// would otherwise choose which service and which certificate authority a root copy trusts. A copy
// started through pkexec takes them only from its own command line (--api-url, --ipinfo-url,
// --probe-url, --ca-file), which is what the person elevating saw and confirmed; the elevation
// passes the user's command line on unchanged.
class StartEnvironment {
public:
    // Puts the handed-over variables and the override options of `arguments` (argv, program
    // first) into the process environment. In a copy started through pkexec it first drops the
    // overrides the environment carries, and sets HOME to the elevating user's home unless it was
    // handed over. Call before anything reads the environment.
    static void prepare(const QStringList& arguments);

    // The arguments an elevated copy is started with: `arguments` without the program and without
    // earlier hand-over arguments, followed by one "--env=NAME=VALUE" for each variable of
    // `environment` ("NAME=VALUE" entries) that may cross, and TAVERO_ELEVATED=1.
    static QList<QByteArray> elevationArguments(const QList<QByteArray>& arguments,
                                                const QList<QByteArray>& environment);

    // Whether NAME may be handed over to an elevated copy.
    static bool mayCross(const QByteArray& name);
    // Whether NAME chooses a service or what is trusted.
    static bool isTrustOverride(const QByteArray& name);
};

} // namespace tavero
