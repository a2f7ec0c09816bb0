#pragma once

#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Session/SessionBus.h"
#include "Freedesktop/Session/XConnection.h"

#include <gio/gdesktopappinfo.h>

#include <memory>
#include <string>
#include <vector>

namespace marrowick {

/// Starts applications. Nothing waits for what was started, and a failure stays silent.
class Launcher {
public:
    explicit Launcher(std::shared_ptr<XConnection> connection);

    /// Starts an executable file.
    void startProgram(std::string const& path, std::vector<std::string> const& arguments = {});

    /// Starts an application: once, or for each of `files` where it takes but one.
    void launch(GDesktopAppInfo* application, std::vector<std::string> const& files);

    /// Opens `files` in the user's application for `contentType`; false where there is none.
    bool openInDefaultApplication(char const* contentType, std::vector<std::string> const& files);

    /// Tells the next window of another program that the user asked for it at this moment, so that it may come to the
    /// front.
    std::string makeStartupID();

private:
    void start(GDesktopAppInfo* application, std::vector<std::string> command);
    void activateOverBus(GDesktopAppInfo* application, std::vector<std::string> const& files);

    std::shared_ptr<XConnection> connection_;
    SessionBus bus_;
    unsigned int startupCount_ = 0;
};

}
