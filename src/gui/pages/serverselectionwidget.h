#pragma once

#include "api/serverspresentationdata.h"
#include "gui/pages/abstractcontentpage.h"
#include "gui/pages/ivpnthirdcolumnprovider.h"

#include <memory>

class QTreeWidget;
class QTreeWidgetItem;
class ServerSelectionController;

namespace Ui {
class ServerSelectionWidget;
}

namespace tavero {
class VpnManager;
}

namespace Gui {

// The page on which the user picks a country: one list in two sections ("Recommended", "All
// servers"), each country a row with its flag, its name and the load of its best server. A single
// click on a country chooses it; the arrow goes back to the status page. The rows come ready-made
// from the server selection controller; the page only renders them and reports the choice.
class ServerSelectionWidget : public AbstractContentPage, public IVpnThirdColumnProvider {
    Q_OBJECT

public:
    // Tree item types: section titles and country rows.
    enum ItemType { HeaderItem = 0, CountryItem = 1 };
    // Column 0 of a country row keeps the country code under this role (absent when the country
    // has no available server).
    static constexpr int countryCodeRole = Qt::UserRole;

    // Neither the manager nor the controller is owned; both outlive the page.
    ServerSelectionWidget(tavero::VpnManager& manager, ServerSelectionController& controller,
                          QWidget* parent = nullptr);
    ~ServerSelectionWidget() override;

    // Rebuilds the list from the controller's current rows.
    void fillUp();
    // Re-applies the form's texts and the section titles in the current language.
    void reTranslateUI();
    // Chooses the country (the controller returns to the status page); ignored while a choice or
    // a step back is being handled.
    void selectCountry(const QString& code);

    int thirdColumnWidth() const override;
    QFont percentageFont() const override;
    int percentageMargin() const override;
    static int firstColumnWidth() { return 87; }

    // Replaces the tree's content by the two sections of `data`; a section without any country
    // that has servers is left out, title included.
    void showServerData(QTreeWidget* tree, ServersPresentationData& data);

protected:
    void resizeEvent(QResizeEvent* event) override;

private slots:
    void onGoToBack();
    void itemDoubleClicked(QTreeWidgetItem* item, int column);
    void currentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem* previous);
    // Puts fresh load figures into the rows already shown.
    void updateServersLoading();

private:
    void adjustTree();
    void adjustComnsWidth();
    void addSection(QTreeWidget* tree, int section, const QVector<CountryPresentationData>& rows);
    QString sectionTitle(int section) const;
    void addServerToTree(QTreeWidget* tree, const CountryPresentationData& row);

    std::unique_ptr<Ui::ServerSelectionWidget> m_ui;
    tavero::VpnManager& m_manager;
    ServerSelectionController& m_controller;
    bool m_selectionRunning = false;
    bool m_loadingUpdateRunning = false;
};

} // namespace Gui
