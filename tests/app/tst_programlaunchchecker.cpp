// The launch check between real processes: a helper program plays the other copy of the client.
#include "app/programlaunchchecker.h"
#include "support/testmain.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QProcess>
#include <QSystemSemaphore>
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

} // namespace

class TestProgramLaunchChecker : public QObject {
    Q_OBJECT

private slots:
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
};

TAVERO_TEST_GUI_MAIN(TestProgramLaunchChecker)
#include "tst_programlaunchchecker.moc"
