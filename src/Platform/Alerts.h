#pragma once

#include "Platform/Result.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace marrowick {

enum class AlertStyle : std::uint8_t {
    warning = 0,
    informational = 1,
};

/// What a line feed in a text is.
enum class LineFeed : std::uint8_t {
    /// A character as a name may hold it: shown by a sign of its own.
    ofName,
    /// The end of a line.
    endOfLine,
};

/// A question or a message that stops the user until it is answered. All texts are plain text; bytes that are not UTF-8 are
/// repaired for display.
struct Alert {
    AlertStyle style = AlertStyle::warning;
    std::string messageText;
    std::string informativeText;
    /// In the order in which they stand. The first is the default and answers Return; the last answers Escape and closing.
    /// None stands for the desktop's single "OK".
    std::vector<std::string> buttons;
    /// What line feeds in the informative text are.
    LineFeed lineFeed = LineFeed::ofName;
};

/// Shows alerts, one at a time, in front of everything, open menus closed first. While one is up the program hears nothing
/// but its answer: everything else that would reach it waits, and clicks on the status item bring the alert to the front.
/// Main thread only.
class Alerts {
public:
    virtual ~Alerts() = default;

    /// Waits for the answer and returns the index of its button.
    virtual std::size_t runModal(Alert const& alert) = 0;

    /// Shows the desktop's standard alert for `error` and waits until it is dismissed.
    virtual void runModal(Error const& error) = 0;
};

}
