#pragma once

// The colours the pages share, as "#RRGGBB" texts: usable both as QColor(Colors::x) and inside a
// style sheet. Style sheets quoted whole in a page keep their literal colours.
namespace Colors {
inline constexpr char windowBackground[] = "#F1F4FB"; // window and list background
inline constexpr char white[] = "#FFFFFF";            // bands, fields, text on buttons and badges
inline constexpr char bottomBandGradient[] = "#DCE2EF";
inline constexpr char loginText[] = "#10224B"; // login title and texts
inline constexpr char ipAddress[] = "#273C4F";
inline constexpr char caption[] = "#6F798F";     // "Your IP:", section titles of the server list
inline constexpr char countryName[] = "#A4ADC2"; // also flag frames and the flag label border
inline constexpr char loginFieldText[] = "#656E83";
inline constexpr char fieldBorder[] = "#e3e5e6"; // also the progress border
inline constexpr char fieldShadow[] = "#E3E6EC";
inline constexpr char separator[] = "#d2d6e1"; // lines between server list rows
inline constexpr char connectButton[] = "#91C51B";
inline constexpr char connectButtonHover[] = "#A9DA3A";
inline constexpr char protectedBadge[] = "#91C51B";
inline constexpr char disconnectButton[] = "#FB1B43"; // also the login button
inline constexpr char disconnectButtonHover[] = "#FF5573";
inline constexpr char unprotectedBadge[] = "#FB1B43";
inline constexpr char trayMenuSelection[] = "#4997d0";
inline constexpr char loadLow[] = "#70AF09";
inline constexpr char loadMedium[] = "#FFDA44";
inline constexpr char loadHigh[] = "#D14D40";
} // namespace Colors
