#pragma once

#include "Freedesktop/Session/FileManagerService.h"
#include "Freedesktop/Session/Launcher.h"
#include "Platform/ScriptingBridge.h"

#include <memory>

namespace marrowick {

/// Understands the scripts that the program itself sends, and answers every other one with an error. No file manager
/// tells its state here: nothing is selected, and the front window's target is a null descriptor, the answer that
/// stands for "no window" without being an error.
class FreedesktopScriptingBridge : public ScriptingBridge {
public:
    explicit FreedesktopScriptingBridge(std::shared_ptr<XConnection> connection);

    std::variant<EventDescriptor, ScriptFailure> execute(std::string_view source) override;

private:
    Launcher launcher_;
    FileManagerService fileManager_;
};

}
