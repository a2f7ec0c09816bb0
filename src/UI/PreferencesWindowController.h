#pragma once

namespace marrowick {

/// The window in which the user changes the settings. Main thread only.
class PreferencesWindowController {
public:
    static PreferencesWindowController& shared();

    /// Brings the window to the front.
    void show();
};

}
