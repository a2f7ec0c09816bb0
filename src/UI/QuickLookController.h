#pragma once

#include "Platform/FileURL.h"

namespace marrowick {

/// The preview of one item. Main thread only.
class QuickLookController {
public:
    static QuickLookController& shared();

    void preview(FileURL const& url);
};

}
