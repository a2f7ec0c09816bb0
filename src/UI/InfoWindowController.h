#pragma once

#include "Platform/FileURL.h"

namespace marrowick {

/// The program's own Info window on one item. Main thread only.
class InfoWindowController {
public:
    static InfoWindowController& shared();

    void show(FileURL const& url);
};

}
