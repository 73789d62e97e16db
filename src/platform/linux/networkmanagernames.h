#pragma once

#include <QString>

// NetworkManager's D-Bus names, shared by the network switch and the dial-up.
namespace tavero::networkmanager {

inline const QString service = QStringLiteral("org.freedesktop.NetworkManager");
inline const QString managerPath = QStringLiteral("/org/freedesktop/NetworkManager");
inline const QString managerInterface = QStringLiteral("org.freedesktop.NetworkManager");
inline const QString settingsPath = QStringLiteral("/org/freedesktop/NetworkManager/Settings");
inline const QString settingsInterface = QStringLiteral("org.freedesktop.NetworkManager.Settings");
inline const QString connectionInterface =
    QStringLiteral("org.freedesktop.NetworkManager.Settings.Connection");
inline const QString activeInterface =
    QStringLiteral("org.freedesktop.NetworkManager.Connection.Active");
inline const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

} // namespace tavero::networkmanager
