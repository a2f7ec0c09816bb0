#pragma once

#include <optional>
#include <string>
#include <vector>

namespace marrowick::companion {

/// The folder that a window shows whose location is `uri`: the desktop has a location of its own in Caja.
std::string folderURI(std::string uri);

/// The path of an item that a request can name: it is on the disk, and its path is UTF-8.
std::optional<std::string> requestablePath(std::string const& uri);

/// Those of the items at `uris` that a request can name, in their order.
std::vector<std::string> requestablePaths(std::vector<std::string> const& uris);

}
