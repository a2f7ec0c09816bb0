#pragma once

#include "Models/MenuNode.h"

#include <string>
#include <vector>

namespace marrowick {

/// An entry of a menu of installed things, on its way into the user's order.
struct InstalledEntry {
    FileURL url;
    std::string title;
    /// What it is sorted by.
    std::string sortName;
};

/// A `file` node for each entry, by the user's order of their sort names; equal ones keep the order of `entries`. Main
/// thread only.
std::vector<MenuNode> nodesInOrder(std::vector<InstalledEntry> entries);

}
