#pragma once

#include "Platform/FileURL.h"

#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

struct FileType {
    std::string identifier;
    /// What the type is called in the user's language; absent where it has no name.
    std::optional<std::string> localizedDescription;
};

/// The kinds of files that the desktop knows. Main thread only.
class FileTypes {
public:
    virtual ~FileTypes() = default;

    /// The type of the item itself, links not followed. Absent where there is no item, or none of a type that is known.
    virtual std::optional<FileType> type(FileURL const& url) const = 0;

    /// Whether files whose names end in this extension hold text. By the extension alone; none is none of text.
    virtual bool isText(std::string_view pathExtension) const = 0;
};

}
