#pragma once

#include "Platform/FileURL.h"

#include <string>
#include <utility>
#include <variant>

namespace marrowick {

/// One of the named line drawings that the desktop side knows ("gearshape", "clock"), drawn in the text colour.
struct SystemSymbol {
    std::string name;
    friend bool operator==(SystemSymbol const&, SystemSymbol const&) = default;
};

/// The icon that the desktop shows for a file.
struct FileIcon {
    FileURL url;
    friend bool operator==(FileIcon const&, FileIcon const&) = default;
};

/// The description of a picture. It costs nothing to make and to compare; the pixels are found when it is painted.
struct Image {
    std::variant<SystemSymbol, FileIcon> source;
    /// Width and height in points; zero leaves the picture at its natural size.
    int pointSize = 0;
    /// For people who do not see the picture; empty where it only decorates.
    std::string accessibilityDescription;
    friend bool operator==(Image const&, Image const&) = default;

    static Image systemSymbol(std::string name, std::string accessibilityDescription = {})
    {
        return { SystemSymbol { std::move(name) }, 0, std::move(accessibilityDescription) };
    }
    static Image iconForFile(FileURL url, int pointSize) { return { FileIcon { std::move(url) }, pointSize, {} }; }
};

}
