#pragma once

#include "Actions/ModifierAction.h"
#include "Models/MenuContext.h"
#include "Models/MenuNode.h"
#include "Platform/FileURL.h"
#include "Platform/RunningApplication.h"

#include <optional>

namespace marrowick {

struct MainThreadOnlyBox;

/// Decides what choosing an entry does, and what a key does with the highlighted one. Main thread only; failures of
/// what is opened stay silent.
class MenuActionHandler {
public:
    /// The user chose the entry of `node`. Entries without a file do nothing.
    static void choose(MenuNode const& node, MenuContext const& context, std::optional<FileURL> const& copyDestination);

    /// The user pressed an action key on an entry that represents `on`: a `MenuNode` or a `std::shared_ptr` of a
    /// `RunningApplication`. Anything else is ignored.
    static void performModifier(ModifierAction action, MainThreadOnlyBox const& on);

    /// The same for a file; nothing when there is none.
    static void performModifier(ModifierAction action, std::optional<FileURL> const& url);

    /// The same for an application: acts on the file that it is started by, where it has one.
    static void performModifier(ModifierAction action, RunningApplication& onProcess);

private:
    static void performModifier(ModifierAction action, FileURL const& url);
};

}
