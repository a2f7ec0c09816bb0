#pragma once

#include <string_view>

namespace marrowick {

/// The system log. Any thread.
class Log {
public:
    virtual ~Log() = default;

    /// Writes one line. Control characters in `message` are written as `\xNN`, everything else as it stands.
    virtual void write(std::string_view message) = 0;
};

}
