#include "gui/pages/aboutprogrammwindowswidget.h"

#include "ui_aboutprogrammwindowswidget.h"

#include <QCoreApplication>
#include <QDate>
#include <QEvent>
#include <QMessageBox>

AboutProgrammWindowsWidget::AboutProgrammWindowsWidget(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::AboutProgrammWindowsWidget>())
{
    m_ui->setupUi(this);
    m_ui->logoWidget->setStyleSheet(QStringLiteral("QWidget {background: #353a45;}"));
    connect(m_ui->checkUpdateButton, &QPushButton::clicked, this,
            &AboutProgrammWindowsWidget::checkNewVersionAppSignal);
    reTranslateUI();
}

AboutProgrammWindowsWidget::~AboutProgrammWindowsWidget() = default;

void AboutProgrammWindowsWidget::showYouHaveTheLatestVersion()
{
    QMessageBox::information(nullptr, m_latestVersionTitle, m_latestVersionMessage);
}

void AboutProgrammWindowsWidget::reTranslateUI()
{
    m_ui->versionLabel_->setText(
        QStringLiteral("%1 %2").arg(tr("label.version"), QCoreApplication::applicationVersion()));
    const QString releaseDate =
        QCoreApplication::instance()->property("AppLocaleDateString").toString();
    m_ui->buildDateLabel_->setText(
        QStringLiteral("%1: %2").arg(tr("label.release_date"), releaseDate));
    m_ui->copyRightLabel->setText(
        QStringLiteral("%1 \u00a9 %2 TAVERO")
            .arg(tr("label.copyright"), QDate::currentDate().toString(QStringLiteral("yyyy"))));
    m_latestVersionTitle = tr("title.you_have_actual_version");
    m_latestVersionMessage = tr("message.you_have_actual_version");
}

void AboutProgrammWindowsWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LanguageChange) {
        m_ui->retranslateUi(this);
        reTranslateUI();
    }
    QWidget::changeEvent(event);
}
