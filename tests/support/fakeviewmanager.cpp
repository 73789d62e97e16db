#include "support/fakeviewmanager.h"

namespace tavero::test {

bool FakeViewManager::checkUpdateDlg()
{
    m_calls << QStringLiteral("checkUpdateDlg");
    return false;
}

void FakeViewManager::goToSplashScreen()
{
    navigate(QStringLiteral("goToSplashScreen"));
}

void FakeViewManager::goToLogin()
{
    navigate(QStringLiteral("goToLogin"));
}

void FakeViewManager::goToStatus(bool afterLogin)
{
    navigate(afterLogin ? QStringLiteral("goToStatus(true)") : QStringLiteral("goToStatus(false)"));
}

void FakeViewManager::goToSettings()
{
    // A modal dialog over the current page: the page underneath stays current.
    m_calls << QStringLiteral("goToSettings");
}

void FakeViewManager::goToInformation()
{
    m_calls << QStringLiteral("goToInformation");
}

void FakeViewManager::goToServerSelection()
{
    navigate(QStringLiteral("goToServerSelection"));
}

void FakeViewManager::show()
{
    m_calls << QStringLiteral("show");
}

void FakeViewManager::setPreloadFinished()
{
    m_calls << QStringLiteral("setPreloadFinished");
}

void FakeViewManager::navigate(const QString& call)
{
    m_calls << call;
    m_currentPage = call;
}

} // namespace tavero::test
