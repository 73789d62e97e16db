#pragma once

#include <QWidget>
#include <memory>

namespace Ui {
class AboutProgrammWindowsWidget;
}

// The About page of the settings dialog: logo, version, release date, the update check button and
// the copyright line. Keeps its own fonts (the start-up font pass leaves it alone).
class AboutProgrammWindowsWidget : public QWidget {
    Q_OBJECT

public:
    explicit AboutProgrammWindowsWidget(QWidget* parent = nullptr);
    ~AboutProgrammWindowsWidget() override;

    // Modal "You have the latest version" box (no parent), for a check that found nothing newer.
    void showYouHaveTheLatestVersion();
    // Re-applies the texts made in code: version, release date (the application property
    // "AppLocaleDateString"), copyright line and the latest-version box texts.
    void reTranslateUI();

signals:
    void checkNewVersionAppSignal();

protected:
    void changeEvent(QEvent* event) override;

private:
    std::unique_ptr<Ui::AboutProgrammWindowsWidget> m_ui;
    QString m_latestVersionTitle;
    QString m_latestVersionMessage;
};
