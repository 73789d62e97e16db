#pragma once

#include "api/iserverapi.h"
#include "api/logoutbroadcaster.h"

#include <QHash>
#include <QMutex>
#include <functional>

namespace tavero::test {

// A scriptable IServerApi: every operation returns the matching public field (set it before the
// call) and counts its calls. An optional hook per call name runs before the answer is returned,
// so a test can change the next answer or act in the middle of a blocking exchange. Flag pictures
// may be asked for from several threads at once (the server page's row builders): they are
// counted apart, under a lock, and run no hook.
class FakeServerApi : public IServerApi {
public:
    LoginResult loginByEmail(const QString&, const QString& password) override
    {
        lastPassword = password;
        return answer("loginByEmail", loginResult);
    }
    IpGettingResult receiveIp() override { return answer("receiveIp", ipResult); }
    LogoutBroadcaster& logoutBroadcaster() override { return m_broadcaster; }
    QString token() override { return currentToken; }
    void setToken(const QString& token) override { currentToken = token; }
    AccountInfoGettingResult receiveAccountInfo() override
    {
        return answer("receiveAccountInfo", accountInfo);
    }
    ServerListGettingResult receiveServerList() override
    {
        return answer("receiveServerList", serverList);
    }
    ServerListGettingResult receiveRecommendedServerList(const QString& ip) override
    {
        lastRecommendedIp = ip;
        return answer("receiveRecommendedServerList", recommendedServerList);
    }
    LastVersionGettingResult receiveLastVersion() override
    {
        return answer("receiveLastVersion", lastVersion);
    }
    QByteArray receiveFlagPicture(const QString&, FlagPictureSize) override
    {
        const QMutexLocker locker(&m_flagMutex);
        ++m_flagCalls;
        return flagPicture;
    }
    bool isThereInternet() override { return answer("isThereInternet", internet); }

    // How often the operation of that name (as spelled in IServerApi) was called.
    int calls(const QString& operation) const { return m_calls.value(operation); }
    int flagCalls() const
    {
        const QMutexLocker locker(&m_flagMutex);
        return m_flagCalls;
    }
    // Runs at each call of `operation`, before the answer is read from the fields.
    void onCall(const QString& operation, std::function<void()> hook)
    {
        m_hooks.insert(operation, std::move(hook));
    }

    LoginResult loginResult;
    IpGettingResult ipResult;
    QString currentToken;
    AccountInfoGettingResult accountInfo;
    ServerListGettingResult serverList;
    ServerListGettingResult recommendedServerList;
    LastVersionGettingResult lastVersion;
    QByteArray flagPicture;
    bool internet = true;

    QString lastPassword;
    QString lastRecommendedIp;

private:
    // Counts the call and runs its hook, then reads the answer (which the hook may change).
    template <typename T>
    T answer(const char* operation, const T& field)
    {
        const QString name = QString::fromLatin1(operation);
        ++m_calls[name];
        const auto hook = m_hooks.find(name); // called in place: a hook may keep state
        if (hook != m_hooks.end() && *hook)
            (*hook)();
        return field;
    }

    LogoutBroadcaster m_broadcaster;
    QHash<QString, int> m_calls;
    QHash<QString, std::function<void()>> m_hooks;
    mutable QMutex m_flagMutex;
    int m_flagCalls = 0;
};

} // namespace tavero::test
