#include "support/testmain.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <unistd.h>

// Starts the real program the way a user or the system would.
class TestStartup : public QObject {
    Q_OBJECT

    QString executable() const { return qEnvironmentVariable("TAVERO_EXECUTABLE"); }

private slots:
    void keepsRunningInItsEventLoop()
    {
        QProcess tavero;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("TAVERO_NO_ELEVATE", "1");
        tavero.setProcessEnvironment(env);
        tavero.start(executable(), QStringList());
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
                              executable()});
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
        QProcess::execute("pkill", {"-f", "-u", "65534", executable()});
    }
};

TAVERO_TEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
