#pragma once

#include "api/lastversiongettingresult.h"

#include <QDialog>
#include <memory>

namespace Ui {
class NewVersionDialog;
}

// True when the service's version is newer than this build (the application property
// "APPLICATION_VERSION_INT" is smaller than result.versionInt).
bool hasNewVersionForDevice(const LastVersionGettingResult& result);

// Offers a newer client: shows the change log, downloads the installer on request, saves it as
// "update.exe" in the current directory and starts the update runner ("UpdateRunner" in the
// program directory, no arguments, the saved file's path in TAVERO_UPDATE_FILE). The view manager
// owns one and reuses it for every check.
class NewVersionDialog : public QDialog {
    Q_OBJECT

public:
    // `programDirectory` is where the runner is started from (empty: the application's
    // directory); tests hand in one of their own.
    explicit NewVersionDialog(QWidget* parent = nullptr, const QString& programDirectory = {});
    ~NewVersionDialog() override;

    // Asks the service for its latest version; a failed request answers false with nothing shown.
    bool checkUpdate();
    // Nothing newer: false with nothing shown. Otherwise runs the dialog modally; true when the
    // user accepted and the installer was saved and handed to the runner (the client must quit).
    // An empty change log gives the compact dialog without the "What's new?" frame.
    bool checkUpdate(const LastVersionGettingResult& result);
    // Keeps `result` for the download and lays the dialog out for it, idle, without showing it.
    void setVersion(const LastVersionGettingResult& result);

    // True: progress bar and Cancel instead of Install and Install later.
    void setProgressIndicatorVisibility(bool visible);
    // Writes "update.exe" in the current directory, makes the program directory current and
    // starts the runner detached. Failures are not reported: the runner reports a missing file.
    void saveReceivedData(const QByteArray& bytes);

public slots:
    // Downloads the kept result's address in a local event loop. A network-layer failure or
    // Cancel closes the dialog rejected and writes nothing; any reply that completes (an HTTP
    // error page too: the runner refuses what is not an installer) is saved and the dialog
    // accepted.
    void startDownload();
    void dontDownload();
    void cancelDownload();

    // Closing the window or Escape while downloading cancels the download first.
    void reject() override;

signals:
    void signalCancelDownload();

protected:
    void changeEvent(QEvent* event) override;

private:
    void useCompactLayout();
    void useFullLayout();

    std::unique_ptr<Ui::NewVersionDialog> m_ui;
    const QString m_programDirectory;
    LastVersionGettingResult m_result;
    bool m_downloading = false;
};
