#pragma once

#include "Platform/FileManager.h"
#include "Platform/Platform.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// A disk with one folder on it, and the services that a scan of that folder asks.
class OneFolder {
public:
    static FileURL url();

    /// Items between slashes, each a letter for its kind and a name: "f" file, "d" directory, "a" application, "l" link to
    /// a directory, any other an item of which nothing can be read. Capital letters are for items without a date. What
    /// no listing has is left out: empty and hidden names, and a name that is there already.
    void addItems(std::string_view text);

    /// As long as the folder lives.
    Platform services() const;

    std::vector<ListedItem> items;
    std::optional<std::string> orderFile;
    std::string sortMode;
    bool tossExtensions = false;
};

}
