#include "gui/pages/loginwidget.h"

#include "gui/shell/colors.h"
#include "gui/shell/logincontroller.h"
#include "gui/shell/qttools.h"
#include "ui_loginwidget.h"

#include <QGraphicsDropShadowEffect>
#include <QLineEdit>
#include <QMessageBox>

namespace Gui {

namespace {

const char* const fieldStyle =
    "QLineEdit {font: #656E83;background: #FFFFFF;color: #656E83;border-color: #e3e5e6;"
    "border-radius: 26px;margin: 2px;margin-bottom: 4px;font-weight: 400;font-size: 18px;"
    "line-height: 22px;}";

constexpr int buttonTextPadding = 36;

void addShadow(QWidget* field)
{
    auto* shadow = new QGraphicsDropShadowEffect(field);
    shadow->setColor(QColor(Colors::fieldShadow));
    shadow->setOffset(0, 3);
    shadow->setBlurRadius(8);
    field->setGraphicsEffect(shadow);
}

} // namespace

LoginWidget::LoginWidget(tavero::VpnManager& manager, LoginController& controller, QWidget* parent)
    : AbstractContentPage(parent)
    , m_manager(manager)
    , m_controller(controller)
    , m_ui(std::make_unique<Ui::LoginWidget>())
{
    m_ui->setupUi(this);
    m_ui->logoBackground->setColor(QColor(Colors::white));
    m_ui->bottomBackgroundWidget->setColor(QColor(Colors::bottomBandGradient));
    m_ui->bottomBackgroundWidget->setGradient();

    QFont titleFont = m_ui->label->font();
    titleFont.setFamily(QStringLiteral("Montserrat"));
    m_ui->label->setFont(titleFont);
    QtTools::setSemiboldFont(m_ui->label);
    QtTools::setSemiboldFont(m_ui->pushButtonEnter);
    QtTools::setButtonTextPadding(m_ui->pushButtonEnter, buttonTextPadding);

    for (QLineEdit* field : {m_ui->lineEditEmail, m_ui->lineEditPassword}) {
        field->setStyleSheet(QLatin1String(fieldStyle));
        addShadow(field);
    }
    m_ui->loginByEmailWidget->show();

    connect(m_ui->pushButtonEnter, &QPushButton::clicked, this, &LoginWidget::enterButtonClick);
    connect(m_ui->lineEditEmail, &QLineEdit::returnPressed, this, &LoginWidget::enterButtonClick);
    connect(m_ui->lineEditPassword, &QLineEdit::returnPressed, this,
            &LoginWidget::enterButtonClick);
}

LoginWidget::~LoginWidget() = default;

void LoginWidget::reTranslateUI()
{
    m_ui->retranslateUi(this);
    // The button's minimum width depends on its text.
    QtTools::setButtonTextPadding(m_ui->pushButtonEnter, buttonTextPadding);
}

void LoginWidget::correctFontAfterScale() {}

void LoginWidget::loginTypeClick() {}

void LoginWidget::showMissingField(const QString& text, QWidget* field)
{
    QMessageBox::warning(nullptr, QStringLiteral("TAVERO"), text, QMessageBox::Ok);
    emit messageBoxShowed();
    field->setFocus();
}

void LoginWidget::enterButtonClick()
{
    // Fixed texts: they are not part of the catalogues.
    if (m_ui->lineEditEmail->text().isEmpty()) {
        showMissingField(QStringLiteral("Введите, пожалуйста, e-mail."), m_ui->lineEditEmail);
        return;
    }
    if (m_ui->lineEditPassword->text().isEmpty()) {
        showMissingField(QStringLiteral("Введите, пожалуйста, пароль."), m_ui->lineEditPassword);
        return;
    }

    emit aboutToStartWaiting();
    const bool success =
        m_controller.login(m_ui->lineEditEmail->text(), m_ui->lineEditPassword->text());
    emit aboutToStopWaiting();

    if (!success) {
        // The controller has shown the reason; keep what was typed for another try.
        emit messageBoxShowed();
        return;
    }
    for (QLineEdit* field : findChildren<QLineEdit*>())
        field->clear();
}

} // namespace Gui
