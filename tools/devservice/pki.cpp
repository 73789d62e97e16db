#include "pki.h"

#include <QFile>
#include <QProcess>
#include <QStringList>
#include <ctime>
#include <openssl/pem.h>
#include <openssl/x509.h>

namespace tavero::devservice {

namespace {

const char addressesFile[] = "pki-addresses.txt";

std::string joined(const std::vector<std::string>& addresses)
{
    std::string text;
    for (const std::string& address : addresses)
        text += address + "\n";
    return text;
}

} // namespace

const std::vector<std::string>& Pki::fileNames()
{
    static const std::vector<std::string> names{
        "ca.pem",         "ca.key",      "https.pem",   "https.key",   "vpn-server.pem",
        "vpn-server.key", "client1.pem", "client1.key", "client2.pem", "client2.key"};
    return names;
}

bool Pki::expiresSoon(const std::string& certificateFile)
{
    FILE* file = std::fopen(certificateFile.c_str(), "r");
    if (!file)
        return true;
    X509* certificate = PEM_read_X509(file, nullptr, nullptr, nullptr);
    std::fclose(file);
    if (!certificate)
        return true;
    std::time_t horizon = std::time(nullptr) + 2 * 24 * 3600;
    const bool soon = X509_cmp_time(X509_get0_notAfter(certificate), &horizon) <= 0;
    X509_free(certificate);
    return soon;
}

bool Pki::ensure(const std::string& stateDir, const std::string& script,
                 const std::vector<std::string>& extraAddresses, std::string& error)
{
    bool complete = true;
    for (const std::string& name : fileNames())
        complete = complete && QFile::exists(QString::fromStdString(stateDir + "/" + name));
    QFile recorded(QString::fromStdString(stateDir + "/" + addressesFile));
    const bool sameAddresses = recorded.open(QIODevice::ReadOnly) &&
                               recorded.readAll().toStdString() == joined(extraAddresses);
    recorded.close();
    if (complete && sameAddresses && !expiresSoon(stateDir + "/ca.pem") &&
        !expiresSoon(stateDir + "/https.pem"))
        return true;

    QStringList arguments{QString::fromStdString(script), QString::fromStdString(stateDir)};
    for (const std::string& address : extraAddresses)
        arguments << QString::fromStdString(address);
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("bash"), arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0) {
        error = "make-pki failed for " + stateDir;
        return false;
    }
    if (!recorded.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        error = "cannot write " + recorded.fileName().toStdString();
        return false;
    }
    recorded.write(QByteArray::fromStdString(joined(extraAddresses)));
    return true;
}

} // namespace tavero::devservice
