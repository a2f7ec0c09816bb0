#pragma once

#include "Platform/FileURL.h"
#include "Platform/Image.h"

#include <cstdint>
#include <optional>
#include <string>

namespace marrowick {

enum class ActivationPolicy : std::uint8_t {
    regular,
    /// Runs with windows, but not as one of the desktop's applications.
    accessory,
    /// Has no window at all.
    prohibited,
};

/// How much of an application comes to the front.
enum class ActivationOptions : std::uint8_t {
    /// Its frontmost window.
    none,
    /// All its windows, in the order in which they lie above each other.
    allWindows,
};

/// One application that runs, or ran when this record was made: an application that has quit keeps answering with what
/// was known last. Main thread only.
class RunningApplication {
public:
    virtual ~RunningApplication() = default;

    virtual std::optional<std::string> bundleIdentifier() const = 0;
    virtual std::optional<std::string> localizedName() const = 0;
    /// The file that the application is started by.
    virtual std::optional<FileURL> bundleURL() const = 0;
    virtual ActivationPolicy activationPolicy() const = 0;
    /// Whether it is the application that the user works in.
    virtual bool isActive() const = 0;
    /// Whether the user has put all its windows away.
    virtual bool isHidden() const = 0;
    /// The application's own icon, or a drawing that stands for applications.
    virtual Image icon() const = 0;

    /// Brings the application to the front, and shows what is to come to the front where it is hidden. Nothing happens where
    /// it has no window or has quit.
    virtual void activate(ActivationOptions options) = 0;

    /// Asks the application to quit, as closing its windows does; it may ask the user, and refuse.
    virtual void terminate() = 0;

    /// Ends the application at once.
    virtual void forceTerminate() = 0;
};

}
