#pragma once

#include "Platform/Menu.h"

namespace marrowick {

/// Receives the choice of every entry that stands for a running application. Main thread only.
class MWProcessMenuTarget {
public:
    static MWProcessMenuTarget& shared();

    /// Brings the application of `sender` to the front: all its windows, or with the Option key only the front one. An entry
    /// without an application does nothing.
    void chooseProcess(MenuItem& sender);

    void openPreferences();
};

}
