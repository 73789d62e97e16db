#pragma once

#include "gui/shell/iviewmanager.h"
#include "support/fakebublemessageprovider.h"
#include "support/fakeviewmanagerutils.h"

#include <QStringList>

namespace tavero::test {

// Records navigation instead of performing it. Each call appends its name to calls(), with the
// argument for goToStatus: "goToStatus(true)". utils() and bubleMessageProvider() are recording
// fakes owned by this object; checkUpdateDlg() finds no update; window() is null.
class FakeViewManager : public IViewManager {
public:
    IViewManagerUtils* utils() override { return &m_utils; }
    IBubleMessageProvider* bubleMessageProvider() override { return &m_bubbles; }
    bool checkUpdateDlg() override;
    void goToSplashScreen() override;
    void goToLogin() override;
    void goToStatus(bool afterLogin) override;
    void goToSettings() override;
    void goToInformation() override;
    void goToServerSelection() override;
    void show() override;
    void setPreloadFinished() override;
    MainWindow* window() override { return nullptr; }

    FakeViewManagerUtils& fakeUtils() { return m_utils; }
    FakeBubleMessageProvider& fakeBubbles() { return m_bubbles; }

    const QStringList& calls() const { return m_calls; }
    // The last call that changed the page ("goToLogin", "goToStatus(false)", ...), empty if none.
    QString currentPage() const { return m_currentPage; }
    void clearCalls() { m_calls.clear(); }

private:
    void navigate(const QString& call);

    FakeViewManagerUtils m_utils;
    FakeBubleMessageProvider m_bubbles;
    QStringList m_calls;
    QString m_currentPage;
};

} // namespace tavero::test
