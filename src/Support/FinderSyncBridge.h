#pragma once

namespace marrowick {

/// The exchange of files with the extension inside the file manager. Main thread only.
class FinderSyncBridge {
public:
    static FinderSyncBridge& shared();

    /// Begins the exchange; called once, at launch.
    void start();
};

}
