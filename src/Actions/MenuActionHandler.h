#pragma once

#include "Actions/ModifierAction.h"
#include "Models/MenuContext.h"
#include "Models/MenuNode.h"
#include "Platform/FileURL.h"
#include "Platform/RunningApplication.h"
#include "Support/TransferMode.h"

#include <optional>
#include <vector>

namespace marrowick {

struct MainThreadOnlyBox;

/// Decides what choosing an entry does, and what a key does with the highlighted one. Main thread only; failures of what is
/// opened stay silent.
class MenuActionHandler {
public:
    /// The user chose the entry of `node`. Entries without a file do nothing; an entry of a menu of templates is copied to
    /// `copyDestination`.
    static void choose(MenuNode const& node, MenuContext const& context, std::optional<FileURL> const& copyDestination);

    /// The user pressed an action key on an entry that represents `on`: a `MenuNode` or a `std::shared_ptr` of a
    /// `RunningApplication`. Anything else is ignored.
    static void performModifier(ModifierAction action, MainThreadOnlyBox const& on);

    /// The same for a file; nothing when there is none.
    static void performModifier(ModifierAction action, std::optional<FileURL> const& url);

    /// The same for an application: quits it, or acts on the file that it is started by, where it has one.
    static void performModifier(ModifierAction action, RunningApplication& onProcess);

    /// Asks, then moves the item to the trash.
    static void confirmTrash(FileURL const& url);

    /// Opens a shell script in the text editor, anything else in its default application.
    static void openForEditing(FileURL const& url);

    /// Asks whether to move, copy or alias `items` into `destination`, and does so one item after the other.
    static void presentMoveCopyAliasDialog(std::vector<FileURL> const& items, FileURL const& destination);

    /// Puts one item into a folder. Asks first where something of its plain name stands there, whatever the mode, and
    /// removes that when it is to be replaced; a failure is shown.
    static void performCopy(FileURL const& item, FileURL const& destinationFolder, TransferMode mode);

private:
    static void chooseFile(FileURL const& url, MenuContext const& context);
    static void performOnFile(ModifierAction action, FileURL const& url);
};

}
