#pragma once

#include "openvpnconfigfile.h"

#include <QObject>
#include <QTcpSocket>

namespace tavero {

// The stand-in's behaviour once its configuration has been checked: prints what OpenVPN prints
// and follows one scenario (see tools/fake-openvpn/README.md). On success it first registers the
// "tunnel" with the development service over a held control connection, then prints
// "Initialization Sequence Completed", so the service reports the caller as protected by the time
// a client sees the marker. Ends the process through QCoreApplication::exit.
class FakeOpenVpn : public QObject {
    Q_OBJECT
public:
    // `scenario` as in TAVERO_FAKE_OPENVPN_SCENARIO; `tunnel` as in TAVERO_FAKE_OPENVPN_TUNNEL
    // ("HOST:PORT", empty for none).
    FakeOpenVpn(const OpenVpnConfigFile& config, QString scenario, QString tunnel);
    ~FakeOpenVpn() override;

    // Starts the scenario; false (with a message printed) when it is not understood.
    bool start();

private:
    void printHeader();
    void establish(); // link lines, control connection, then the marker
    void completed(); // prints the marker, starts a break-after timer
    void connectControl();
    void onControlReadable();
    void onControlClosed();
    void breakTunnel(const QString& reason);

    OpenVpnConfigFile m_config;
    QString m_scenario;
    QString m_tunnel;
    double m_seconds = 0; // the number after the scenario's colon
    QTcpSocket m_control;
    QByteArray m_reply;
    bool m_accepted = false;
};

} // namespace tavero
