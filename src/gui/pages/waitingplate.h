#pragma once

#include <QWidget>
#include <memory>

namespace Ui {
class WaitingPlate;
}

namespace Gui {

class WaitingIndicator;

// A translucent plate with a spinner in its middle, laid over a page while the page waits for a
// long operation (the main window sizes it to cover the whole window).
class WaitingPlate : public QWidget {
    Q_OBJECT

public:
    explicit WaitingPlate(QWidget* parent = nullptr);
    ~WaitingPlate() override;

    WaitingIndicator* indicator() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::unique_ptr<Ui::WaitingPlate> m_ui;
};

} // namespace Gui
