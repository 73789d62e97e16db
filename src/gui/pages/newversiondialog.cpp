#include "gui/pages/newversiondialog.h"

#include "api/serverapi.h"
#include "api/servicetrust.h"
#include "app/programfiles.h"
#include "app/userfileaccess.h"
#include "gui/shell/colors.h"
#include "gui/shell/qttools.h"
#include "ui_newversiondialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QFontMetrics>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QProcess>
#include <QTemporaryDir>

namespace {
const QString updateFileName = QStringLiteral("update.exe");
const QString runnerProgram = QStringLiteral("UpdateRunner");
constexpr int compactWidth = 545;
// Everything of the compact dialog but the two texts: logo band, margins, spacing, buttons.
constexpr int compactChrome = 121 + 75;

// Height of `text` wrapped into `width` pixels in the label's font.
int wrappedHeight(const QLabel& label, const QString& text, int width)
{
    return QFontMetrics(label.font())
        .boundingRect(QRect(0, 0, width, 0), Qt::TextWordWrap, text)
        .height();
}
} // namespace

bool hasNewVersionForDevice(const LastVersionGettingResult& result)
{
    const int running =
        QCoreApplication::instance()
            ? QCoreApplication::instance()->property("APPLICATION_VERSION_INT").toInt()
            : 0;
    return running < result.versionInt;
}

NewVersionDialog::NewVersionDialog(QWidget* parent, const QString& programDirectory)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::NewVersionDialog>())
    , m_programDirectory(programDirectory)
{
    // The family reaches the children through font inheritance. It is set before the form is
    // built, because a widget with a style sheet keeps the font its parent had when the sheet was
    // applied, and no container carries a style sheet (that would cut the inheritance off): the
    // white background comes through the palette.
    QFont dialogFont = font();
    dialogFont.setFamily(QStringLiteral("Montserrat"));
    setFont(dialogFont);
    m_ui->setupUi(this);
    setWindowFlags(Qt::Window | Qt::WindowMinimizeButtonHint);
    QtTools::paintWidget(this, QColor(Colors::white));

    m_ui->logoBackground->setColor(QColor(0x36, 0x3a, 0x45));
    QtTools::setSemiboldFont(m_ui->pushButtonSetup);
    QtTools::setSemiboldFont(m_ui->pushButtonSetupLater);
    QtTools::setSemiboldFont(m_ui->pushButtonCancel);

    connect(m_ui->pushButtonSetup, &QPushButton::clicked, this, &NewVersionDialog::startDownload);
    connect(m_ui->pushButtonSetupLater, &QPushButton::clicked, this,
            &NewVersionDialog::dontDownload);
    connect(m_ui->pushButtonCancel, &QPushButton::clicked, this, &NewVersionDialog::cancelDownload);
    setProgressIndicatorVisibility(false);
}

NewVersionDialog::~NewVersionDialog() = default;

bool NewVersionDialog::checkUpdate()
{
    tavero::ServerApi api;
    const LastVersionGettingResult result = api.receiveLastVersion();
    if (result.status != RequestResult::Ok)
        return false;
    return checkUpdate(result);
}

bool NewVersionDialog::checkUpdate(const LastVersionGettingResult& result)
{
    if (!hasNewVersionForDevice(result))
        return false;
    setVersion(result);
    return exec() == QDialog::Accepted;
}

void NewVersionDialog::setVersion(const LastVersionGettingResult& result)
{
    m_result = result;
    // A dialog reused after a failed or cancelled download starts idle again.
    setProgressIndicatorVisibility(false);
    m_ui->progressBar->setValue(0);
    if (result.changelog.isEmpty()) {
        useCompactLayout();
    } else {
        m_ui->changeLogPlainTextEdit->setPlainText(result.changelog);
        useFullLayout();
    }
}

void NewVersionDialog::useCompactLayout()
{
    m_ui->changeLogQFrame->hide();
    const QMargins margins = m_ui->contentLayout->contentsMargins();
    const int textWidth = compactWidth - margins.left() - margins.right();
    const int warningHeight =
        wrappedHeight(*m_ui->warningUpdateLabel, m_ui->warningUpdateLabel->text(), textWidth);
    const int titleHeight = wrappedHeight(*m_ui->newVersionDetectedLabel,
                                          m_ui->newVersionDetectedLabel->text(), textWidth);
    setFixedSize(compactWidth, titleHeight + warningHeight + compactChrome);
}

void NewVersionDialog::useFullLayout()
{
    m_ui->changeLogQFrame->show();
    setMinimumSize(468, 230);
    setMaximumSize(470, 573);
    resize(468, 573);
}

void NewVersionDialog::setProgressIndicatorVisibility(bool visible)
{
    m_ui->progressBar->setVisible(visible);
    m_ui->pushButtonCancel->setVisible(visible);
    m_ui->pushButtonSetup->setVisible(!visible);
    m_ui->pushButtonSetupLater->setVisible(!visible);
}

void NewVersionDialog::startDownload()
{
    if (m_downloading)
        return;
    m_downloading = true;
    setProgressIndicatorVisibility(true);

    QNetworkAccessManager network;
    QNetworkRequest request{QUrl(m_result.url)};
    tavero::ServiceTrust::apply(request); // a development service's installer is served by it
    // Installers are often served through a redirect; never follow one from HTTPS to HTTP.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    QPointer<QNetworkReply> reply = network.get(request);
    bool succeeded = true;
    QEventLoop wait;

    connect(reply, &QNetworkReply::downloadProgress, this, [this](qint64 received, qint64 total) {
        // An unknown size (0, or -1 when the server sends none) shows a full bar.
        m_ui->progressBar->setValue(total <= 0 ? 100 : int(received * 100 / total));
    });
    connect(reply, &QNetworkReply::errorOccurred, &wait,
            [&succeeded, &wait](QNetworkReply::NetworkError code) {
                // Below 100: the connection itself failed (refused, unknown host, time-out, TLS,
                // cancelled). Errors the server answered with end the reply normally.
                if (code < 100) {
                    succeeded = false;
                    wait.quit();
                }
            });
    const QMetaObject::Connection cancelled =
        connect(this, &NewVersionDialog::signalCancelDownload, &wait, [&succeeded, &wait] {
            succeeded = false;
            wait.quit();
        });
    connect(reply, &QNetworkReply::finished, &wait, &QEventLoop::quit);

    if (!reply->isFinished())
        wait.exec(); // user input stays live, so Cancel can be pressed
    disconnect(cancelled);
    m_downloading = false;
    if (reply && reply->isRunning())
        reply->abort();

    if (!succeeded || !reply) {
        QDialog::reject();
        return;
    }
    saveReceivedData(reply->readAll());
    accept();
}

void NewVersionDialog::dontDownload()
{
    QDialog::reject();
}

void NewVersionDialog::cancelDownload()
{
    emit signalCancelDownload();
}

void NewVersionDialog::reject()
{
    if (m_downloading) {
        // The download's own loop closes the dialog once it has stopped.
        cancelDownload();
        return;
    }
    QDialog::reject();
}

void NewVersionDialog::saveReceivedData(const QByteArray& bytes)
{
    // The runner installs the file with administrator rights, so nobody else may be able to
    // put or change a file where it lies: the current folder when only this user can write it,
    // otherwise a new private folder.
    QString folder = QDir::currentPath();
    if (!tavero::UserFileAccess::isPrivateFolder(folder)) {
        QTemporaryDir privateFolder(QDir::tempPath() + QStringLiteral("/tavero-update-XXXXXX"));
        privateFolder.setAutoRemove(false);
        folder = privateFolder.path();
    }
    QFile update(QDir(folder).filePath(updateFileName));
    const QString updatePath = QFileInfo(update).absoluteFilePath();
    if (!folder.isEmpty() && update.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        update.write(bytes);
        update.close();
    }

    const QString programDirectory = m_programDirectory.isEmpty()
                                         ? tavero::ProgramFiles::companionDirectory()
                                         : m_programDirectory;
    QDir::setCurrent(programDirectory);
    QProcess runner;
    runner.setProgram(QDir(programDirectory).filePath(runnerProgram));
    runner.setWorkingDirectory(programDirectory);
    // The file lies in the directory that was current before; the runner is told where.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TAVERO_UPDATE_FILE"), updatePath);
    runner.setProcessEnvironment(environment);
    runner.startDetached();
}

void NewVersionDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this);
    QDialog::changeEvent(event);
}
