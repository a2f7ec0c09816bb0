#pragma once

#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Session/SessionBus.h"
#include "Freedesktop/Session/XConnection.h"

#include <gio/gdesktopappinfo.h>

#include <memory>
#include <optional>
#include <string>

namespace marrowick {

/// Starts applications. Nothing waits for what was started, and a failure stays silent.
class Launcher {
public:
    explicit Launcher(std::shared_ptr<XConnection> connection);

    /// Starts an executable file.
    void startProgram(std::string const& path);

    /// Starts an application, with a file where one is given.
    void launch(GDesktopAppInfo* application, std::optional<std::string> const& file);

    /// Opens `file` in the user's application for `contentType`; false where there is none.
    bool openInDefaultApplication(char const* contentType, std::string const& file);

    /// Tells the next window of another program that the user asked for it at this moment, so that it may come to the
    /// front.
    std::string makeStartupID();

private:
    void activateOverBus(GDesktopAppInfo* application, std::optional<std::string> const& file);

    std::shared_ptr<XConnection> connection_;
    SessionBus bus_;
    unsigned int startupCount_ = 0;
};

}
