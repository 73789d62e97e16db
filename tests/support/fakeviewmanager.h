#pragma once

#include "gui/shell/iviewmanager.h"
#include "support/fakebublemessageprovider.h"
#include "support/fakeviewmanagerutils.h"

namespace tavero::test {

// Records navigation instead of performing it: each call appends its name to calls(), with the
// argument for goToStatus ("goToStatus(true)"). utils() and bubleMessageProvider() are recording
// fakes owned by this object; checkUpdateDlg() finds no update; window() is null.
class FakeViewManager : public IViewManager {
public:
    IViewManagerUtils* utils() override { return &m_utils; }
    IBubleMessageProvider* bubleMessageProvider() override { return &m_bubbles; }
    bool checkUpdateDlg() override
    {
        record("checkUpdateDlg");
        return false;
    }
    void goToSplashScreen() override { navigate("goToSplashScreen"); }
    void goToLogin() override { navigate("goToLogin"); }
    void goToStatus(bool afterLogin) override
    {
        navigate(afterLogin ? "goToStatus(true)" : "goToStatus(false)");
    }
    // Dialogs over the current page: the page underneath stays current.
    void goToSettings() override { record("goToSettings"); }
    void goToInformation() override { record("goToInformation"); }
    void goToServerSelection() override { navigate("goToServerSelection"); }
    void show() override { record("show"); }
    void setPreloadFinished() override { record("setPreloadFinished"); }
    MainWindow* window() override { return nullptr; }

    FakeViewManagerUtils& fakeUtils() { return m_utils; }
    FakeBubleMessageProvider& fakeBubbles() { return m_bubbles; }

    const QStringList& calls() const { return m_calls; }
    // The last call that changed the page ("goToLogin", "goToStatus(false)", ...), empty if none.
    QString currentPage() const { return m_currentPage; }
    void clearCalls() { m_calls.clear(); }

private:
    void record(const char* call) { m_calls << QString::fromLatin1(call); }
    void navigate(const char* call)
    {
        record(call);
        m_currentPage = QString::fromLatin1(call);
    }

    FakeViewManagerUtils m_utils;
    FakeBubleMessageProvider m_bubbles;
    QStringList m_calls;
    QString m_currentPage;
};

} // namespace tavero::test
