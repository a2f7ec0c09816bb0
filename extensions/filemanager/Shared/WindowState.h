#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marrowick::companion {

/// One window of the file manager that shows a folder.
struct WindowState {
    /// The number of its X window; 0 where it has none.
    std::uint64_t window = 0;
    std::string folderURI;
    /// In the order in which the window shows them.
    std::vector<std::string> selectedURIs;
    std::string title;
    /// Whether it has the keyboard focus, or had it last.
    bool isActive = false;
};

}
