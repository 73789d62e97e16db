#pragma once

#include "app/singleinstancemarker.h"

// The launch check of the client: refuses a second copy with a warning box. Start-up calls
// checkDlg("tavero", "TAVERO") once the interface language is installed, so the box is
// translated.
class ProgramLaunchChecker : public tavero::SingleInstanceMarker {
public:
    // attach(name); when another copy holds the marker, shows the modal warning "Application
    // "<displayName>" is already running" (title displayName, one OK button, no parent) and
    // answers true. Otherwise false with nothing shown.
    static bool checkDlg(const QString& name, const QString& displayName);
    // Waits for the user to close a running copy: true as soon as no copy holds the marker;
    // while one does, asks whether to test again (Yes) or give up (anything else: false).
    static bool checkProgrammTurnedDown(const QString& name, const QString& displayName);
};
