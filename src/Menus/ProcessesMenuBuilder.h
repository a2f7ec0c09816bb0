#pragma once

#include "Menus/MWMenu.h"

#include <memory>

namespace marrowick {

/// Makes the menu of the running applications. Main thread only.
class ProcessesMenuBuilder {
public:
    /// A menu that lists applications without a window too where `includeBackgroundOnly` is true, or while the Control key
    /// is held when it opens.
    static std::shared_ptr<MWMenu> build(bool includeBackgroundOnly);

    /// Appends an entry for each running application but this program.
    static void populate(MWMenu& menu, bool includeBackgroundOnly);
};

}
