#pragma once

#include <functional>
#include <optional>
#include <string>

namespace marrowick {

/// This program among the desktop's programs. Main thread only.
class Application {
public:
    virtual ~Application() = default;

    /// The identifier that other programs know this one by; absent where it has none.
    virtual std::optional<std::string> bundleIdentifier() const = 0;

    /// Makes this process the one that serves the user. False when another process does already; that one has then been
    /// asked to show its menu, and this process is to end. Without a way to find the other, true.
    virtual bool claimSingleInstance() = 0;

    /// What another start of the program does here: `handler` runs with the start as the current event.
    virtual void setReopenHandler(std::function<void()> handler) = 0;

    /// The program has neither a taskbar entry nor a menu bar of its own.
    virtual void setAccessoryActivationPolicy() = 0;

    /// Brings the program's windows in front of those of other programs.
    virtual void activate() = 0;

    /// Serves events until `terminate` or the end of the session. `didFinishLaunching` runs once, first.
    virtual void run(std::function<void()> didFinishLaunching) = 0;

    /// Ends `run`.
    virtual void terminate() = 0;

    /// Whether the program is about to end: nobody answers an alert any longer.
    virtual bool isTerminating() const = 0;
};

}
