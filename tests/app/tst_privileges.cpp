// What a copy with administrator rights must not do to the user who started it: take over the
// user's files, hide from the user's copies, or trust what the user's environment says.
#include "app/settings.h"
#include "app/singleinstancemarker.h"
#include "app/startenvironment.h"
#include "platform/nativeplatform.h"
#include "support/testmain.h"

#include <QProcess>
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

    // The environment is the user's, so what it says about the service and the trusted
    // authorities never reaches a root copy (tst_startup elevates one); the command line does,
    // as the user confirmed it.
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
