#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace marrowick {

/// A value that a script returned: nothing, a reference to a file as the bytes of a file URL, a text, or a list.
struct EventDescriptor {
    /// A "file:" URL, percent-encoded.
    struct FileReference {
        std::string url;
        friend bool operator==(FileReference const&, FileReference const&) = default;
    };
    using List = std::vector<EventDescriptor>;

    std::variant<std::monostate, FileReference, std::string, List> value;
    friend bool operator==(EventDescriptor const&, EventDescriptor const&) = default;
};

/// Why there is no descriptor: the text is no script (no value), or running it failed, with the printed description of
/// what the script system said.
struct ScriptFailure {
    std::optional<std::string> errorDescription;
};

/// Runs the scripts by which the program asks the file manager. Main thread only; serves no events while it waits.
class ScriptingBridge {
public:
    virtual ~ScriptingBridge() = default;

    virtual std::variant<EventDescriptor, ScriptFailure> execute(std::string_view source) = 0;
};

}
