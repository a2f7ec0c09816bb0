#pragma once

#include "Platform/Log.h"

#include <string>
#include <string_view>

namespace marrowick {

/// Writes to standard error, which is the journal when the session starts the program. Each line is one write, so lines
/// of several threads and programs do not mix. A line that nobody takes is dropped: standard error that is closed, whose
/// reader is gone or whose reader has not read for a while must not stop the program.
class FreedesktopLog final : public Log {
public:
    /// Occupies the place of standard error when it is closed, so that no other file takes it and receives the lines.
    FreedesktopLog();

    void write(std::string_view message) override;
};

/// `message` with its control characters (those of ASCII, and U+0080 to U+009F as UTF-8) as `\xNN` for each of their
/// bytes. Bytes that are not UTF-8 stay as they are.
std::string escapedForLog(std::string_view message);

}
