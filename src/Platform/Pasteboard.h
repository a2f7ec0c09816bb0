#pragma once

#include <string_view>

namespace marrowick {

/// What the user copies and pastes. Main thread only.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces all that can be pasted by a plain text. Bytes that are not UTF-8 are repaired.
    virtual void setText(std::string_view text) = 0;
};

}
