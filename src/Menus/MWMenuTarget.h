#pragma once

#include "Platform/Menu.h"

namespace marrowick {

/// Receives the choice of every entry that stands for a node. Main thread only.
class MWMenuTarget {
public:
    static MWMenuTarget& shared();

    /// Hands the node of `sender` on, with the situation of this moment. An entry without a node does nothing.
    void chooseItem(MenuItem& sender);
};

}
