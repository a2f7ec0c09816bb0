#pragma once

#include "Freedesktop/Session/FileManagerService.h"
#include "Freedesktop/Session/FileManagerStates.h"
#include "Freedesktop/Session/FrontWindow.h"
#include "Freedesktop/Session/Launcher.h"
#include "Platform/ScriptingBridge.h"

#include <memory>
#include <string_view>
#include <variant>

namespace marrowick {

/// Understands the scripts that the program itself sends, and answers every other one with an error. The selection and
/// the front window are those of the file managers that have a companion on the session bus. Without a companion nothing
/// is selected, and the front window's target is the folder that the desktop's file manager exports, or else a null
/// descriptor, the answer that stands for "no window", and for a window that shows no folder of the disk, without being
/// an error.
class FreedesktopScriptingBridge : public ScriptingBridge {
public:
    explicit FreedesktopScriptingBridge(std::shared_ptr<XConnection> connection);

    std::variant<EventDescriptor, ScriptFailure> execute(std::string_view source) override;

private:
    using Answer = std::variant<EventDescriptor, ScriptFailure>;

    /// What `describe` makes of the front window, of null where there is none.
    template<typename Describe>
    Answer askFrontWindow(Describe describe);
    Answer openInformationWindow(FileURL const& url);

    std::shared_ptr<XConnection> connection_;
    Launcher launcher_;
    FileManagerService fileManager_;
    FileManagerStates fileManagerStates_;
};

}
