#pragma once

#include <QTreeWidget>

// The server list's tree: paints as a tree widget does, then a thin separator line under every
// row. Its own look (background, item height, no indentation) replaces whatever the page set
// before it was first shown.
class ServesSelectionTreeWidget : public QTreeWidget {
    Q_OBJECT

public:
    explicit ServesSelectionTreeWidget(QWidget* parent = nullptr);
    ~ServesSelectionTreeWidget() override;

    static QString ownStyleSheet();

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void applyOwnLook();

    bool m_ownLookApplied = false;
};
