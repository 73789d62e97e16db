#include "gui/pages/servesselectiontreewidget.h"

#include "gui/shell/colors.h"

#include <QPainter>

ServesSelectionTreeWidget::ServesSelectionTreeWidget(QWidget* parent)
    : QTreeWidget(parent)
{}

ServesSelectionTreeWidget::~ServesSelectionTreeWidget() = default;

QString ServesSelectionTreeWidget::ownStyleSheet()
{
    return QStringLiteral(
        "QTreeView,QListView,QTableView,QColumnView {background-color: #F1F4FB;border: 0px solid "
        "#32414B;color: #363333;gridline-color: #F1F4FB;border-radius: 4px;font-family: "
        "Montserrat;white-space: nowrap;}QTreeView::branch {background: #F1F4FB;}QTreeView::item "
        "{ height: 42px;}");
}

void ServesSelectionTreeWidget::showEvent(QShowEvent* event)
{
    // Once, before the first paint: the same look as re-applying it after every paint.
    applyOwnLook();
    QTreeWidget::showEvent(event);
}

void ServesSelectionTreeWidget::applyOwnLook()
{
    if (m_ownLookApplied)
        return;
    m_ownLookApplied = true;
    setStyleSheet(ownStyleSheet());
    setIndentation(0);
}

void ServesSelectionTreeWidget::paintEvent(QPaintEvent* event)
{
    QTreeWidget::paintEvent(event);

    QPainter painter(viewport());
    painter.setPen(QColor(Colors::separator));
    const int right = width();
    const auto drawSeparator = [&](QTreeWidgetItem* item) {
        const QRect itemRect = visualItemRect(item);
        if (itemRect.isValid())
            painter.drawLine(0, itemRect.bottom(), right, itemRect.bottom());
    };
    for (int i = 0; i < topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = topLevelItem(i);
        drawSeparator(item);
        for (int child = 0; child < item->childCount(); ++child)
            drawSeparator(item->child(child));
    }
}
