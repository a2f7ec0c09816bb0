#pragma once

#include <string>
#include <vector>

namespace marrowick {

/// What the extension inside the file manager asks for.
struct MoveRequest {
    /// "move", "copy", "alias", or "ask", which leaves the choice among these to the user. Anything else asks for nothing.
    std::string op;
    /// The path of the destination folder, exactly as the snapshot gives it.
    std::string dest;
    /// The absolute paths of the items, in the order in which they are to be handled.
    std::vector<std::string> sources;

    friend bool operator==(MoveRequest const&, MoveRequest const&) = default;
};

}
