// What a copy with administrator rights must not do to the user who started it: take over the
// user's files, hide from the user's copies, or trust what the user's environment says; and the
// real program started the way a user or the system would, elevating itself without rights.
#include "app/settings.h"
#include "app/singleinstancemarker.h"
#include "app/startenvironment.h"
#include "platform/nativeplatform.h"
#include "support/testmain.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <unistd.h>

namespace {
constexpr uint nobody = 65534;
const QFile::Permissions groupOrOthers = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                         QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;

// The first line a launch-check helper prints ("running" or "refused"); it keeps running.
QString startCopy(QProcess& copy, const QString& name, bool asNobody)
{
    const QStringList asUser{"--reuid=65534", "--regid=65534", "--clear-groups"};
    copy.start(asNobody ? "setpriv" : qEnvironmentVariable("TAVERO_LAUNCH_HELPER"),
               (asNobody ? asUser + QStringList{qEnvironmentVariable("TAVERO_LAUNCH_HELPER")}
                         : QStringList())
                   << name);
    return copy.waitForReadyRead(10000) ? QString::fromUtf8(copy.readLine()).trimmed() : QString();
}
} // namespace

class TestPrivileges : public QObject {
    Q_OBJECT

    QTemporaryDir m_root;
    QString m_home = m_root.filePath("home");
    bool m_asRoot = ::geteuid() == 0;

private slots:
    // A fresh account: no ~/.config yet. As root, the home belongs to someone else, as it does
    // for a copy elevated through pkexec or sudo.
    void initTestCase()
    {
        QVERIFY(m_root.isValid() && QDir().mkpath(m_home));
        QFile::setPermissions(m_root.path(), QFile::permissions(m_root.path()) | QFile::ExeOther |
                                                 QFile::ReadOther);
        if (m_asRoot)
            QCOMPARE(::chown(QFile::encodeName(m_home).constData(), nobody, nobody), 0);
        qputenv("HOME", QFile::encodeName(m_home));
        qunsetenv("XDG_CONFIG_HOME");
    }

    void userFilesStayTheUsersAndTheTokenPrivate()
    {
        tavero::Settings settings;
        settings.setToken(QStringLiteral("secret-token"));
        const QString store = m_home + "/.config/TAVERO/TAVERO.conf";
        QCOMPARE(QFile::permissions(store) & groupOrOthers, QFile::Permissions());
        // A store an older version left readable is closed at the next save.
        QVERIFY(QFile::setPermissions(store, QFile::permissions(store) | QFile::ReadOther));
        settings.setEmail(QStringLiteral("me@tavero.example"));
        QCOMPARE(QFile::permissions(store) & groupOrOthers, QFile::Permissions());

        tavero::NativePlatform().setRunOnStart(true);
        QVERIFY(!tavero::SingleInstanceMarker::attach(QStringLiteral("tavero-privileges-own")));

        if (!m_asRoot)
            QSKIP("ownership needs a root copy and another user's home");
        const QString lock = tavero::SingleInstanceMarker::lockFilePath(
            tavero::SingleInstanceMarker::generateGuidedName("tavero-privileges-own"));
        for (const QString& path :
             {m_home + "/.config", m_home + "/.config/TAVERO", store, lock,
              m_home + "/.config/autostart", m_home + "/.config/autostart/tavero.desktop"}) {
            QVERIFY2(QFileInfo::exists(path), qPrintable(path));
            QVERIFY2(QFileInfo(path).ownerId() == nobody, qPrintable(path + " belongs to root"));
        }
    }

    // Copies of the client with and without rights, started in either order, see each other.
    void launchCheckSeesCopiesOfAnyPrivilege()
    {
        if (!m_asRoot || QStandardPaths::findExecutable("setpriv").isEmpty())
            QSKIP("needs root and setpriv to run a copy as another user");
        for (const bool privilegedFirst : {true, false}) {
            const QString name = QStringLiteral("tavero-privileges-%1").arg(privilegedFirst);
            QProcess first;
            QProcess second;
            QCOMPARE(startCopy(first, name, !privilegedFirst), QString("running"));
            QCOMPARE(startCopy(second, name, privilegedFirst), QString("refused"));
            first.closeWriteChannel();
            QVERIFY(first.waitForFinished(10000) && second.waitForFinished(10000));
        }
    }

    void keepsRunningInItsEventLoop()
    {
        QProcess tavero;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("TAVERO_NO_ELEVATE", "1");
        tavero.setProcessEnvironment(env);
        tavero.start(qEnvironmentVariable("TAVERO_EXECUTABLE"), QStringList());
        QVERIFY2(tavero.waitForStarted(), qPrintable(tavero.errorString()));
        QVERIFY2(!tavero.waitForFinished(1500), "the program ended on its own");
        tavero.terminate();
        QVERIFY(tavero.waitForFinished(30000));
    }

    // Without administrator rights the program restarts itself through pkexec; once the elevated
    // copy runs, the first one returns 0 before creating anything.
    void elevatedCopyTakesOver()
    {
        if (::geteuid() != 0)
            QSKIP("needs root to run the program as an unprivileged user");
        const QString setpriv = QStandardPaths::findExecutable("setpriv");
        if (setpriv.isEmpty())
            QSKIP("setpriv is not installed");

        QTemporaryDir bin;
        QVERIFY(bin.isValid());
        QFile::setPermissions(bin.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                              QFile::ReadOther | QFile::ExeOther);
        // A stand-in for pkexec: it runs the command it is given (as the same unprivileged user).
        QFile fake(bin.path() + "/pkexec");
        QVERIFY(fake.open(QIODevice::WriteOnly));
        fake.write("#!/bin/sh\necho \"$@\" > \"$(dirname \"$0\")/pkexec-args\"\nexec \"$@\"\n");
        fake.close();
        fake.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                            QFile::ReadOther | QFile::ExeOther);
        QFile::setPermissions(bin.path(), QFile::permissions(bin.path()) | QFile::WriteOther);

        QProcess first;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("PATH", bin.path() + ":" + env.value("PATH"));
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("DISPLAY", ":987");
        env.insert("HOME", bin.path());
        env.insert("XDG_CONFIG_HOME", bin.path());
        env.insert("TAVERO_MARK", "kept");
        // The user's environment may not point a root copy at another service or authority.
        env.insert("TAVERO_API_URL", "https://attacker.example");
        env.insert("TAVERO_CA_FILE", "/tmp/attacker.pem");
        env.remove("TAVERO_NO_ELEVATE");
        first.setProcessEnvironment(env);
        first.start(setpriv, {"--reuid=65534", "--regid=65534", "--clear-groups", "--inh-caps=-all",
                              qEnvironmentVariable("TAVERO_EXECUTABLE")});
        QVERIFY(first.waitForFinished(15000));
        QCOMPARE(first.exitStatus(), QProcess::NormalExit);
        QCOMPARE(first.exitCode(), 0);

        QFile args(bin.path() + "/pkexec-args");
        QTRY_VERIFY(args.exists());
        QVERIFY(args.open(QIODevice::ReadOnly));
        const QByteArray line = args.readAll();
        QVERIFY2(line.contains("DISPLAY=:987"), line.constData());
        QVERIFY2(line.contains("TAVERO_MARK=kept"), line.constData());
        QVERIFY2(line.contains("TAVERO_ELEVATED=1"), line.constData());
        QVERIFY2(!line.contains("attacker"), line.constData());
        QProcess::execute("pkill",
                          {"-f", "-u", "65534", qEnvironmentVariable("TAVERO_EXECUTABLE")});
    }

    // The environment is the user's, so what it says about the service and the trusted
    // authorities never reaches a root copy (elevatedCopyTakesOver elevates one); the command line
    // does, as the user confirmed it.
    void elevatedCopyTakesNoServiceOrTrustOverride()
    {
        // The elevated copy: pkexec marks it; overrides come from its command line only.
        qputenv("PKEXEC_UID", QByteArray::number(::getuid()));
        qputenv("TAVERO_UPDATE_FILE", "/tmp/attacker.deb");
        tavero::StartEnvironment::prepare({"tavero", "--env=TAVERO_CA_FILE=/tmp/attacker.pem",
                                           "--env=HOME=" + m_home,
                                           "--api-url=https://chosen.example"});
        qunsetenv("PKEXEC_UID");
        QCOMPARE(qgetenv("TAVERO_API_URL"), QByteArray("https://chosen.example"));
        QVERIFY(!qEnvironmentVariableIsSet("TAVERO_CA_FILE"));
        QVERIFY(!qEnvironmentVariableIsSet("TAVERO_UPDATE_FILE"));
        QCOMPARE(qgetenv("HOME"), QFile::encodeName(m_home));
    }
};

TAVERO_TEST_GUILESS_MAIN(TestPrivileges)
#include "tst_privileges.moc"
