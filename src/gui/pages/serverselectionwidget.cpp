#include "gui/pages/serverselectionwidget.h"

#include "gui/pages/vpnpointitemdelegate.h"
#include "gui/shell/colors.h"
#include "gui/shell/serverselectioncontroller.h"
#include "ui_serverselectionwidget.h"

#include <QDebug>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>

namespace Gui {

namespace {

const char* const textWeight = "500";
// White dots before a section title push it to the right without a layout of its own.
const char* const recommendedTitle = "<span style=\"color:#FFFFFF;\">..........</span><span "
                                     "style=\"color:#6F798F;font-weight: %1;white-space: "
                                     "nowrap; \"> %2</span>";
const char* const allTitle = "<span style=\"color:#FFFFFF;\">........</span><span "
                             "style=\"color:#6F798F;font-weight: %1;white-space: nowrap;\"> "
                             "%2</span>";

// Which section a title row heads, kept on the row so a language change can re-title it.
constexpr int sectionRole = Qt::UserRole + 1;
enum Section { Recommended, All };

const QSize flagIconSize(72, 35);
const QRect flagFrame(32, 6, 36, 24);
const QRect flagPicture(33, 7, 34, 22);

bool hasServers(const QVector<CountryPresentationData>& rows)
{
    return std::any_of(rows.cbegin(), rows.cend(),
                       [](const CountryPresentationData& row) { return !row.servers.isEmpty(); });
}

QIcon flagIcon(const QImage& flag)
{
    QPixmap canvas(flagIconSize);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.fillRect(flagFrame, QColor(Colors::countryName));
    if (!flag.isNull())
        painter.drawImage(flagPicture, flag);
    painter.end();
    return QIcon(canvas);
}

} // namespace

ServerSelectionWidget::ServerSelectionWidget(tavero::VpnManager& manager,
                                             ServerSelectionController& controller, QWidget* parent)
    : AbstractContentPage(parent)
    , m_ui(std::make_unique<Ui::ServerSelectionWidget>())
    , m_manager(manager)
    , m_controller(controller)
{
    m_ui->setupUi(this);
    m_ui->topBackgroundWidget->setColor(QColor(Colors::white));
    adjustTree();

    connect(m_ui->treeServers, &QTreeWidget::itemDoubleClicked, this,
            &ServerSelectionWidget::itemDoubleClicked);
    connect(m_ui->treeServers, &QTreeWidget::currentItemChanged, this,
            &ServerSelectionWidget::currentItemChanged);
    connect(m_ui->pushButtonBack, &QPushButton::clicked, this, &ServerSelectionWidget::onGoToBack);
}

ServerSelectionWidget::~ServerSelectionWidget() = default;

void ServerSelectionWidget::adjustTree()
{
    QTreeWidget* tree = m_ui->treeServers;
    tree->setItemDelegate(new VpnPointItemDelegate(tree, this, tree));
    QFont treeFont = tree->font();
    treeFont.setPointSize(13);
    tree->setFont(treeFont);
    tree->setColumnCount(3);
    tree->setHeaderHidden(true);
    tree->setIndentation(10);
    tree->setColumnWidth(0, firstColumnWidth());
    tree->setColumnWidth(2, thirdColumnWidth());
    tree->setIconSize(flagIconSize);
    tree->setStyleSheet(QStringLiteral("QTreeWidget { border: transparent;background: #F1F4FB;}"));
    tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tree->horizontalScrollBar()->hide();
}

int ServerSelectionWidget::percentageMargin() const
{
    return 10;
}

QFont ServerSelectionWidget::percentageFont() const
{
    QFont percentage = font();
    percentage.setPointSize(7);
    percentage.setFamily(QStringLiteral("Montserrat"));
    percentage.setWeight(87);
    return percentage;
}

int ServerSelectionWidget::thirdColumnWidth() const
{
    return QFontMetrics(percentageFont()).horizontalAdvance(QStringLiteral("88%")) + 20;
}

void ServerSelectionWidget::resizeEvent(QResizeEvent* event)
{
    AbstractContentPage::resizeEvent(event);
    adjustComnsWidth();
}

void ServerSelectionWidget::adjustComnsWidth()
{
    QTreeWidget* tree = m_ui->treeServers;
    const double scrollBar = 1.5 * style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const double width = tree->width() - firstColumnWidth() - thirdColumnWidth() - scrollBar - 30;
    tree->setColumnWidth(1, static_cast<int>(width));
}

void ServerSelectionWidget::fillUp()
{
    ServersPresentationData data = m_controller.receiveServers();
    showServerData(m_ui->treeServers, data);
}

void ServerSelectionWidget::reTranslateUI()
{
    m_ui->retranslateUi(this);
    // The list may be on screen under the settings dialog that changed the language.
    QTreeWidget* tree = m_ui->treeServers;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = tree->topLevelItem(i);
        if (item->type() == HeaderItem)
            item->setText(0, sectionTitle(item->data(0, sectionRole).toInt()));
    }
}

QString ServerSelectionWidget::sectionTitle(int section) const
{
    if (section == Recommended) {
        return QString::fromLatin1(recommendedTitle)
            .arg(QLatin1String(textWeight), tr("label.recommended_servers"));
    }
    return QString::fromLatin1(allTitle).arg(QLatin1String(textWeight), tr("label.all_servers"));
}

void ServerSelectionWidget::showServerData(QTreeWidget* tree, ServersPresentationData& data)
{
    tree->clear();
    if (hasServers(data.recommended))
        addSection(tree, Recommended, data.recommended);
    if (hasServers(data.all))
        addSection(tree, All, data.all);
}

void ServerSelectionWidget::addSection(QTreeWidget* tree, int section,
                                       const QVector<CountryPresentationData>& rows)
{
    auto* header = new QTreeWidgetItem(tree, HeaderItem);
    header->setText(0, sectionTitle(section));
    header->setData(0, sectionRole, section);
    header->setFirstColumnSpanned(true);
    header->setBackground(0, QColor(Colors::white));
    // A title is not something to pick: no selection highlight.
    header->setFlags(Qt::ItemIsEnabled);
    for (const CountryPresentationData& row : rows) {
        if (!row.servers.isEmpty())
            addServerToTree(tree, row);
    }
}

void ServerSelectionWidget::addServerToTree(QTreeWidget* tree, const CountryPresentationData& row)
{
    auto* item = new QTreeWidgetItem(tree, CountryItem);
    item->setIcon(0, flagIcon(row.flagImage));
    item->setText(1, QStringLiteral("<span style=\"font-weight: %1;\">%2</span>")
                         .arg(QLatin1String(textWeight), row.country.name.toHtmlEscaped()));

    const int best = m_controller.getBestServerIndex(row.servers);
    qDebug() << row.country.name << "best server idx" << best;
    if (best == -1)
        return;
    item->setData(0, countryCodeRole, row.country.code);
    VpnServerInformation server = row.servers.at(best);
    item->setText(2, m_controller.getServerLoadingText(server));
}

void ServerSelectionWidget::selectCountry(const QString& code)
{
    if (m_selectionRunning)
        return;
    m_selectionRunning = true;
    m_controller.onCountrySelection(code);
    m_selectionRunning = false;
}

void ServerSelectionWidget::onGoToBack()
{
    if (m_selectionRunning)
        return;
    m_selectionRunning = true;
    m_controller.goBack();
    m_selectionRunning = false;
}

void ServerSelectionWidget::itemDoubleClicked(QTreeWidgetItem*, int) {}

void ServerSelectionWidget::currentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem*)
{
    // A country without an available server has no code; the controller then says so.
    if (current && current->type() == CountryItem)
        selectCountry(current->data(0, countryCodeRole).toString());
}

void ServerSelectionWidget::updateServersLoading()
{
    if (m_loadingUpdateRunning)
        return;
    m_loadingUpdateRunning = true;
    const QMap<QString, QString> loadings = m_controller.getCountryLoadings();
    QTreeWidget* tree = m_ui->treeServers;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = tree->topLevelItem(i);
        const QVariant code = item->data(0, countryCodeRole);
        if (code.isValid() && loadings.contains(code.toString()))
            item->setText(2, loadings.value(code.toString()));
    }
    m_loadingUpdateRunning = false;
}

} // namespace Gui
