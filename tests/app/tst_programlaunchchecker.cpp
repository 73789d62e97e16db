// The launch marker between real processes: a helper program plays the other copy of the client,
// for the launch check and for the update runner, which restarts the client only once the old
// copy let go of the marker. The runner runs as the client starts it: a copy of the program in a
// directory of its own, beside a stand-in "tavero" that records being started, with a stand-in
// installer.
#include "app/programlaunchchecker.h"
#include "support/testmain.h"

#include <QAbstractButton>
#include <QDir>
#include <QMessageBox>
#include <QProcess>
#include <QSystemSemaphore>
#include <QTemporaryDir>
#include <QTimer>
#include <memory>
#include <vector>

namespace {

// A fresh marker name per use, so tests (and runs of this test side by side) never meet.
QString uniqueName()
{
    static int counter = 0;
    return QStringLiteral("tavero-test-%1-%2")
        .arg(QCoreApplication::applicationPid())
        .arg(++counter);
}

// One helper process playing a copy of the client. One still running when it goes is ended
// normally, so it leaves no marker behind in the system.
class Copy {
public:
    explicit Copy(const QString& name)
    {
        m_process.start(qEnvironmentVariable("TAVERO_LAUNCH_HELPER"), {name});
    }
    ~Copy()
    {
        if (m_process.state() != QProcess::NotRunning && !exitNormally())
            crash();
    }
    Q_DISABLE_COPY_MOVE(Copy)

    // "running" or "refused"; empty when the helper said nothing in time.
    QString firstAnswer() { return readLine(); }
    QString ask(const QByteArray& command)
    {
        m_process.write(command + '\n');
        return readLine();
    }
    // Ends the copy normally, or like a crash (SIGKILL: no destructor, no detach).
    bool exitNormally()
    {
        m_process.closeWriteChannel();
        return finishedWith(0);
    }
    bool crash()
    {
        m_process.kill();
        return m_process.waitForFinished(30000);
    }
    bool finishedWith(int exitCode)
    {
        return m_process.waitForFinished(30000) && m_process.exitStatus() == QProcess::NormalExit &&
               m_process.exitCode() == exitCode;
    }

private:
    QString readLine()
    {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(30000))
                return QString();
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }

    QProcess m_process;
};

enum Exit { Installed = 0, NoUpdate = 2, NotInstallable = 3, InstallFailed = 4 };

// The owner's alone, as the client saves the update (the runner refuses one others could change),
// whatever the umask.
bool writeFile(const QString& path, const QByteArray& content, bool executable = false)
{
    return tavero::test::TestEnvironment::writeFile(path, content) &&
           QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner |
                                           (executable ? QFile::ExeOwner : QFile::Permissions()));
}

using tavero::test::TestEnvironment;

// A real Debian package with the given control fields, built with dpkg-deb.
QByteArray debianPackage(const QString& name, const QString& architecture,
                         const QString& version = QStringLiteral("1.2.3.11"))
{
    QTemporaryDir root;
    QDir(root.path()).mkpath("tree/DEBIAN");
    // dpkg-deb takes no other mode, whatever the umask (the coverage run clears it).
    QFile::setPermissions(root.filePath("tree/DEBIAN"), QFile::ReadOwner | QFile::WriteOwner |
                                                            QFile::ExeOwner | QFile::ReadGroup |
                                                            QFile::ExeGroup | QFile::ReadOther |
                                                            QFile::ExeOther);
    QDir(root.path()).mkpath("tree/usr/share/doc/" + name);
    const QString control = QStringLiteral("Package: %1\nVersion: %3\nArchitecture: %2\n"
                                           "Maintainer: Tavero <dev@tavero.example>\n"
                                           "Description: test package\n")
                                .arg(name, architecture, version);
    writeFile(root.filePath("tree/DEBIAN/control"), control.toUtf8());
    writeFile(root.filePath("tree/usr/share/doc/" + name + "/README"), "readme\n");
    QProcess build;
    build.start("dpkg-deb",
                {"--root-owner-group", "--build", root.filePath("tree"), root.filePath("p.deb")});
    build.waitForFinished(30000);
    return TestEnvironment::readFile(root.filePath("p.deb"));
}

} // namespace

class TestProgramLaunchChecker : public QObject {
    Q_OBJECT

    QByteArray m_clientPackage;
    QByteArray m_otherPackage;
    QByteArray m_foreignArchitecturePackage;

    // The program directory of one run: the runner, "tavero" and the installer stand-ins.
    struct Installation {
        QTemporaryDir directory;
        QString runner() const { return directory.filePath("UpdateRunner"); }
        QString installer() const { return directory.filePath("installer"); }
        QString installerLog() const { return directory.filePath("installer.log"); }
        QString startedLog() const { return directory.filePath("started.log"); }
        QString updateFile() const { return directory.filePath("update.exe"); }
    };

    std::unique_ptr<Installation> makeInstallation()
    {
        auto installation = std::make_unique<Installation>();
        if (!QFile::copy(qEnvironmentVariable("TAVERO_UPDATE_RUNNER"), installation->runner()))
            return nullptr;
        // Records its working directory and argument count, as the client would run there.
        writeFile(installation->directory.filePath("tavero"),
                  "#!/bin/sh\necho \"$PWD $#\" > \"$(dirname \"$0\")/started.log\"\n", true);
        writeFile(installation->installer(),
                  "#!/bin/sh\necho \"$@\" > \"$(dirname \"$0\")/installer.log\"\n"
                  "exit ${INSTALLER_EXIT:-0}\n",
                  true);
        return installation;
    }

    // Starts the runner the way the client does: from the program directory, no update file
    // named, plus the test's installer and a marker name of its own.
    static void start(QProcess& runner, const Installation& installation,
                      const QString& instanceName, int installerExit = 0)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove("TAVERO_UPDATE_FILE");
        env.insert("INSTALLER_EXIT", QString::number(installerExit));
        runner.setProcessEnvironment(env);
        runner.setWorkingDirectory(installation.directory.path());
        runner.start(installation.runner(),
                     {"--installer", installation.installer(), "--instance-name", instanceName});
    }

private slots:
    void initTestCase()
    {
        QProcess dpkg;
        dpkg.start("dpkg", {"--print-architecture"});
        QVERIFY(dpkg.waitForFinished());
        const QString machine = QString::fromLatin1(dpkg.readAllStandardOutput()).trimmed();
        m_clientPackage = debianPackage("tavero", "all");
        m_otherPackage = debianPackage("tavero-tools", "all");
        m_foreignArchitecturePackage =
            debianPackage("tavero", machine == "s390x" ? "riscv64" : "s390x");
        QVERIFY(m_clientPackage.startsWith("!<arch>"));
    }

    // check() asks without claiming; a refused copy takes nothing away; a crashed copy's marker
    // does not block the next one.
    void secondCopyRefusedUntilTheFirstEnds_data()
    {
        QTest::addColumn<bool>("crashes");
        QTest::newRow("first copy exits") << false;
        QTest::newRow("first copy crashes") << true;
    }

    void secondCopyRefusedUntilTheFirstEnds()
    {
        QFETCH(bool, crashes);
        const QString name = uniqueName();
        QVERIFY(!ProgramLaunchChecker::check(name));
        Copy first(name);
        QCOMPARE(first.firstAnswer(), QString("running"));
        QVERIFY(ProgramLaunchChecker::check(name));
        {
            Copy second(name);
            QCOMPARE(second.firstAnswer(), QString("refused"));
            QVERIFY(second.finishedWith(1));
        }
        QCOMPARE(first.ask("check"), QString("held"));

        QVERIFY(crashes ? first.crash() : first.exitNormally());
        if (!crashes)
            QVERIFY(!ProgramLaunchChecker::check(name));
        Copy third(name);
        QCOMPARE(third.firstAnswer(), QString("running"));
        Copy fourth(name);
        QCOMPARE(fourth.firstAnswer(), QString("refused"));
        QVERIFY(third.exitNormally());

        // The crashed copy made the semaphore and could not remove it: take it over and drop it.
        QSystemSemaphore(ProgramLaunchChecker::generateGuidedName(name) + "_semaphore", 1,
                         QSystemSemaphore::Create);
    }

    void copiesStartedTogetherAdmitExactlyOne()
    {
        const QString name = uniqueName();
        std::vector<std::unique_ptr<Copy>> copies;
        for (int i = 0; i < 6; ++i)
            copies.push_back(std::make_unique<Copy>(name));
        QStringList answers;
        for (auto& copy : copies)
            answers << copy->firstAnswer();
        QCOMPARE(answers.count("running"), 1);
        QCOMPARE(answers.count("refused"), 5);
    }

    // No gives up and leaves the running copy alone; Yes after the user closed the running copy
    // tests again and passes.
    void turnedDown_data()
    {
        QTest::addColumn<bool>("yes");
        QTest::newRow("no") << false;
        QTest::newRow("yes after closing the other copy") << true;
    }

    void turnedDown()
    {
        QFETCH(bool, yes);
        const QString name = uniqueName();
        Copy running(name);
        QCOMPARE(running.firstAnswer(), QString("running"));
        int boxes = 0;
        QTimer answerer;
        connect(&answerer, &QTimer::timeout, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box || !box->isVisible())
                return;
            ++boxes;
            if (yes)
                QVERIFY(running.exitNormally());
            for (QAbstractButton* button : box->buttons()) {
                if (button->text() == QLatin1String(yes ? "action.yes" : "action.no"))
                    button->click();
            }
        });
        answerer.start(20);
        QCOMPARE(ProgramLaunchChecker::checkProgrammTurnedDown(name, "TAVERO"), yes);
        QCOMPARE(boxes, 1);
        if (!yes)
            QCOMPARE(running.ask("check"), QString("held")); // the running copy is untouched
    }

    // It installs with administrator rights: only a newer package of the client for this
    // machine, which nobody else could have put or changed where it lies.
    void handlesTheDownloadedFile_data()
    {
        QTest::addColumn<QVariant>("content"); // null: no file
        QTest::addColumn<int>("installerExit");
        QTest::addColumn<int>("expectedExit");
        QTest::addColumn<bool>("othersMayWrite"); // the folder it lies in

        const auto refused = [](const char* name, const QByteArray& content, bool shared = false) {
            QTest::newRow(name) << QVariant(content) << 0 << int(NotInstallable) << shared;
        };
        QTest::newRow("no file") << QVariant() << 0 << int(NoUpdate) << false;
        refused("Windows installer", QByteArray("MZ\x90\0\3\0\0\0", 8));
        refused("truncated package", m_clientPackage.left(m_clientPackage.size() / 2));
        refused("another package", m_otherPackage);
        refused("another architecture", m_foreignArchitecturePackage);
        refused("older version", debianPackage("tavero", "all", "1.2.3.9"));
        refused("same version", debianPackage("tavero", "all", "1.2.3.10"));
        refused("folder others may write", m_clientPackage, true);
        QTest::newRow("client package for every architecture")
            << QVariant(m_clientPackage) << 0 << int(Installed) << false;
        QTest::newRow("installer fails")
            << QVariant(m_clientPackage) << 100 << int(InstallFailed) << false;
    }

    void handlesTheDownloadedFile()
    {
        QFETCH(QVariant, content);
        QFETCH(int, installerExit);
        QFETCH(int, expectedExit);
        QFETCH(bool, othersMayWrite);

        const auto installation = makeInstallation();
        QVERIFY(installation);
        if (!content.isNull())
            QVERIFY(writeFile(installation->updateFile(), content.toByteArray()));
        if (othersMayWrite)
            QVERIFY(QFile::setPermissions(installation->directory.path(),
                                          QFile::permissions(installation->directory.path()) |
                                              QFile::WriteOther));

        QProcess runner;
        start(runner, *installation,
              QStringLiteral("tavero-update-test-%1").arg(QCoreApplication::applicationPid()),
              installerExit);
        QVERIFY(runner.waitForFinished(30000));
        QCOMPARE(runner.exitStatus(), QProcess::NormalExit);
        QCOMPARE(runner.exitCode(), expectedExit);
        QVERIFY2(!runner.readAllStandardError().trimmed().isEmpty(), "the outcome is reported");

        const bool installerRan = expectedExit == Installed || expectedExit == InstallFailed;
        QCOMPARE(QFile::exists(installation->installerLog()), installerRan);
        if (installerRan)
            QCOMPARE(TestEnvironment::readFile(installation->installerLog()).trimmed(),
                     installation->updateFile().toUtf8());

        if (expectedExit == Installed) {
            QVERIFY2(!QFile::exists(installation->updateFile()), "installed file left behind");
            QTRY_VERIFY(QFile::exists(installation->startedLog()));
            // Started again from the program directory, without arguments.
            QTRY_COMPARE(TestEnvironment::readFile(installation->startedLog()).trimmed(),
                         QDir(installation->directory.path()).canonicalPath().toUtf8() + " 0");
        } else {
            QCOMPARE(QFile::exists(installation->updateFile()), !content.isNull());
            QTest::qWait(100);
            QVERIFY(!QFile::exists(installation->startedLog()));
        }
    }

    // The client is still shutting down when the installation ends: the new copy is started only
    // once the old one let go of its marker, or it would refuse to run.
    void restartsTheClientOnlyAfterTheOldCopyExited()
    {
        const auto installation = makeInstallation();
        QVERIFY(installation);
        QVERIFY(writeFile(installation->updateFile(), m_clientPackage));
        const QString instance =
            QStringLiteral("tavero-update-restart-%1").arg(QCoreApplication::applicationPid());

        Copy oldClient(instance);
        QCOMPARE(oldClient.firstAnswer(), QString("running"));

        QProcess runner;
        start(runner, *installation, instance);
        QTRY_VERIFY(QFile::exists(installation->installerLog()));
        QTest::qWait(400);
        QVERIFY2(!QFile::exists(installation->startedLog()), "started while the old copy ran");
        QCOMPARE(runner.state(), QProcess::Running);

        QVERIFY(oldClient.exitNormally());
        QVERIFY(runner.waitForFinished(30000));
        QCOMPARE(runner.exitCode(), int(Installed));
        QTRY_VERIFY(QFile::exists(installation->startedLog()));
    }
};

TAVERO_TEST_GUI_MAIN(TestProgramLaunchChecker)
#include "tst_programlaunchchecker.moc"
