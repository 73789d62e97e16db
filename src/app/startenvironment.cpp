#include "app/startenvironment.h"

#include <QDebug>
#include <QFile>

#ifdef Q_OS_UNIX
#include <pwd.h>
#endif

namespace tavero {

namespace {
const QByteArray handOverPrefix = "--env=";

// The command-line options of the overrides and the variables they set.
struct OverrideOption {
    const char* option;
    const char* variable;
};
constexpr OverrideOption overrideOptions[] = {
    {"--api-url=", "TAVERO_API_URL"},
    {"--ipinfo-url=", "TAVERO_IPINFO_URL"},
    {"--probe-url=", "TAVERO_PROBE_URL"},
    {"--ca-file=", "TAVERO_CA_FILE"},
};

bool startedThroughPkexec()
{
    return qEnvironmentVariableIsSet("PKEXEC_UID");
}

#ifdef Q_OS_UNIX
QByteArray homeOf(const QByteArray& uidText)
{
    bool ok = false;
    const uint uid = uidText.toUInt(&ok);
    const passwd* entry = ok ? ::getpwuid(uid) : nullptr;
    return entry != nullptr ? QByteArray(entry->pw_dir) : QByteArray();
}
#else
QByteArray homeOf(const QByteArray&)
{
    return QByteArray();
}
#endif
} // namespace

bool StartEnvironment::isTrustOverride(const QByteArray& name)
{
    for (const OverrideOption& option : overrideOptions) {
        if (name == option.variable)
            return true;
    }
    return name == "TAVERO_UPDATE_FILE";
}

bool StartEnvironment::mayCross(const QByteArray& name)
{
    static const QList<QByteArray> session = {"DISPLAY",         "XAUTHORITY", "WAYLAND_DISPLAY",
                                              "XDG_RUNTIME_DIR", "HOME",       "XDG_CONFIG_HOME"};
    if (session.contains(name))
        return true;
    return name.startsWith("TAVERO_") && !isTrustOverride(name);
}

void StartEnvironment::prepare(const QStringList& arguments)
{
    const bool elevated = startedThroughPkexec();
    if (elevated) {
        for (const OverrideOption& option : overrideOptions)
            qunsetenv(option.variable);
        qunsetenv("TAVERO_UPDATE_FILE");
    }
    bool homeHandedOver = false;
    for (const QString& argument : arguments.mid(1)) {
        const QByteArray bytes = QFile::encodeName(argument);
        if (bytes.startsWith(handOverPrefix)) {
            const QByteArray assignment = bytes.mid(handOverPrefix.size());
            const int equals = assignment.indexOf('=');
            const QByteArray name = assignment.left(equals);
            if (equals <= 0 || !mayCross(name)) {
                qWarning().noquote() << "Ignored a variable that may not be handed over:" << name;
                continue;
            }
            homeHandedOver = homeHandedOver || name == "HOME";
            qputenv(name.constData(), assignment.mid(equals + 1));
            continue;
        }
        for (const OverrideOption& option : overrideOptions) {
            if (bytes.startsWith(option.option))
                qputenv(option.variable, bytes.mid(int(qstrlen(option.option))));
        }
    }
    if (elevated && !homeHandedOver) {
        const QByteArray home = homeOf(qgetenv("PKEXEC_UID"));
        if (!home.isEmpty())
            qputenv("HOME", home);
    }
}

QList<QByteArray> StartEnvironment::elevationArguments(const QList<QByteArray>& arguments,
                                                       const QList<QByteArray>& environment)
{
    QList<QByteArray> result;
    for (const QByteArray& argument : arguments.mid(1)) {
        if (!argument.startsWith(handOverPrefix))
            result << argument;
    }
    for (const QByteArray& assignment : environment) {
        const int equals = assignment.indexOf('=');
        const QByteArray name = assignment.left(equals);
        if (equals > 0 && name != "TAVERO_ELEVATED" && mayCross(name))
            result << handOverPrefix + assignment;
    }
    result << handOverPrefix + "TAVERO_ELEVATED=1";
    return result;
}

} // namespace tavero
