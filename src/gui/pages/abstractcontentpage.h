#pragma once

#include <QWidget>

namespace Gui {

// Base of every page the main window shows. The main window listens to the first two signals to
// cover the page with its waiting plate, and re-emits the last two.
class AbstractContentPage : public QWidget {
    Q_OBJECT

public:
    explicit AbstractContentPage(QWidget* parent = nullptr);
    ~AbstractContentPage() override;

signals:
    void aboutToStartWaiting();
    void aboutToStopWaiting();
    void activeWindowChanged();
    // Emitted after a message box that the page caused has closed.
    void messageBoxShowed();

public slots:
    void startWaiting();
    void stopWaiting();
};

} // namespace Gui
