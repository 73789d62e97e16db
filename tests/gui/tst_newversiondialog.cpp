// The update dialog: the download against the development service, with a stand-in update runner in
// a program directory of the test's own.
#include "api/serverapi.h"
#include "gui/pages/newversiondialog.h"
#include "support/devservice.h"
#include "support/testmain.h"

#include <QDir>
#include <QFileInfo>
#include <QProgressBar>
#include <QPushButton>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <functional>

using tavero::test::DevService;

namespace {

constexpr int runningVersion = 12310;
const QByteArray installerStart = "TAVERO DEVELOPMENT INSTALLER";

} // namespace

class TestNewVersionDialog : public QObject {
    Q_OBJECT

    std::unique_ptr<DevService> m_service;
    std::unique_ptr<tavero::ServerApi> m_api; // trusts the service's CA for the whole process
    QString m_previousDirectory;
    std::unique_ptr<QTemporaryDir> m_currentDirectory;
    std::unique_ptr<QTemporaryDir> m_programDirectory;
    QVector<int> m_progress;

    QString runnerLog() const { return m_programDirectory->filePath("runner.log"); }
    QString savedUpdate() const { return m_currentDirectory->filePath("update.exe"); }

    QString downloadUrl() const { return m_service->apiUrl() + "/downloads/tavero-test.exe"; }

    // Runs `action` once the dialog's modal loop shows it (for the buttons), and records every
    // value the progress bar takes.
    void whenShown(NewVersionDialog& dialog, std::function<void()> action)
    {
        auto* bar = dialog.findChild<QProgressBar*>("progressBar");
        connect(bar, &QProgressBar::valueChanged, this, [this](int value) { m_progress << value; });
        auto* poll = new QTimer(&dialog);
        connect(poll, &QTimer::timeout, &dialog, [&dialog, poll, action] {
            if (!dialog.isVisible())
                return;
            poll->stop();
            poll->deleteLater();
            action();
        });
        poll->start(10);
    }

    static void click(NewVersionDialog& dialog, const char* button)
    {
        auto* target = dialog.findChild<QPushButton*>(button);
        QVERIFY2(target && target->isVisible(), button);
        target->click();
    }

private slots:
    void initTestCase()
    {
        qApp->setProperty("APPLICATION_VERSION_INT", runningVersion);
        m_service = std::make_unique<DevService>();
        QVERIFY2(m_service->isRunning(), qPrintable(m_service->errorText()));
        m_service->exportEnvironment();
        m_api = std::make_unique<tavero::ServerApi>(m_service->endpoints());
        m_previousDirectory = QDir::currentPath();
    }

    void init()
    {
        m_progress.clear();
        QVERIFY(m_service->reset());
        m_currentDirectory = std::make_unique<QTemporaryDir>();
        m_programDirectory = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir::setCurrent(m_currentDirectory->path()));
        // Records where and how it was started.
        const QString runner = m_programDirectory->filePath("UpdateRunner");
        QVERIFY(tavero::test::TestEnvironment::writeFile(
            runner, "#!/bin/sh\necho \"$PWD|$#|$TAVERO_UPDATE_FILE\" > \"$(dirname \"$0\")/"
                    "runner.log\"\n"));
        QVERIFY(QFile::setPermissions(runner, QFile::permissions(runner) | QFile::ExeOwner));
    }

    void cleanup() { QDir::setCurrent(m_previousDirectory); }

    // The whole way, as at start-up: ask the service, download with progress, save, hand over.
    void downloadsSavesAndStartsTheRunner()
    {
        NewVersionDialog dialog(nullptr, m_programDirectory->path());
        bool progressShown = false;
        whenShown(dialog, [&] { click(dialog, "pushButtonSetup"); });
        connect(dialog.findChild<QProgressBar*>("progressBar"), &QProgressBar::valueChanged,
                &dialog, [&] {
                    progressShown =
                        dialog.findChild<QProgressBar*>("progressBar")->isVisible() &&
                        dialog.findChild<QPushButton*>("pushButtonCancel")->isVisible() &&
                        !dialog.findChild<QPushButton*>("pushButtonSetup")->isVisible();
                });
        QVERIFY(dialog.checkUpdate());
        QCOMPARE(m_service->requestCount("/versions/windows/ru"), 1);

        const QByteArray saved = tavero::test::TestEnvironment::readFile(savedUpdate());
        QCOMPARE(saved.size(), 64 * 1024);
        QVERIFY(saved.startsWith(installerStart));
        QVERIFY(progressShown);
        QVERIFY(!m_progress.isEmpty());
        QCOMPARE(m_progress.last(), 100);
        QVERIFY2(std::is_sorted(m_progress.begin(), m_progress.end()), "progress went back");

        // Started detached from the program directory, without arguments, told where the file is.
        QTRY_VERIFY(QFile::exists(runnerLog()));
        const QString programDirectory = QDir(m_programDirectory->path()).canonicalPath();
        QCOMPARE(QString::fromUtf8(tavero::test::TestEnvironment::readFile(runnerLog())).trimmed(),
                 programDirectory + "|0|" + savedUpdate());
        QCOMPARE(QDir::current().canonicalPath(), programDirectory);
    }

    // A broken download closes the dialog; Cancel or closing the window must not wait for a reply
    // the service holds back for long. Nothing is saved, handed over or moved.
    void downloadEndsWithoutAFile_data()
    {
        QTest::addColumn<QString>("way");
        QTest::newRow("connection closed before the body") << "close";
        QTest::newRow("connection refused") << "refused";
        QTest::newRow("Cancel button") << "cancel";
        QTest::newRow("window closed") << "window";
    }
    void downloadEndsWithoutAFile()
    {
        QFETCH(QString, way);
        const bool cancels = way == "cancel" || way == "window";
        if (way == "close")
            QVERIFY(
                m_service->failNext("/downloads/tavero-test.exe", 1, DevService::Failure::Close));
        if (cancels)
            QVERIFY(m_service->delayNext("/downloads/tavero-test.exe", 1, 20000));
        NewVersionDialog dialog(nullptr, m_programDirectory->path());
        QSignalSpy cancelled(&dialog, &NewVersionDialog::signalCancelDownload);
        // Cancelled once the download is under way (its Cancel button shows). The Setup click
        // only returns with the download, so the watch starts first.
        QTimer poll;
        connect(&poll, &QTimer::timeout, &dialog, [&] {
            if (!dialog.findChild<QPushButton*>("pushButtonCancel")->isVisible())
                return;
            poll.stop();
            if (way == "window")
                dialog.close();
            else
                click(dialog, "pushButtonCancel");
        });
        whenShown(dialog, [&] {
            if (cancels)
                poll.start(10);
            click(dialog, "pushButtonSetup");
        });
        LastVersionGettingResult newer;
        newer.status = RequestResult::Ok;
        newer.versionInt = runningVersion + 1;
        newer.changelog = "log";
        newer.url = downloadUrl();
        if (way == "refused") { // a loopback port nobody listens on any more
            QTcpServer server;
            QVERIFY(server.listen(QHostAddress::LocalHost));
            newer.url = QStringLiteral("https://127.0.0.1:%1/x.exe").arg(server.serverPort());
        }
        QElapsedTimer elapsed;
        elapsed.start();
        QVERIFY(!dialog.checkUpdate(newer));
        QVERIFY2(elapsed.elapsed() < 10000, "the download ran on after Cancel");
        QCOMPARE(cancelled.count(), cancels ? 1 : 0);
        QVERIFY(!dialog.isVisible());
        QVERIFY(!QFile::exists(savedUpdate()));
        QCOMPARE(QDir::currentPath(), m_currentDirectory->path());
    }
};

TAVERO_TEST_GUI_MAIN(TestNewVersionDialog)
#include "tst_newversiondialog.moc"
