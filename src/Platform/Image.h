#pragma once

#include "Platform/FileURL.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

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

/// A picture of its own: rows from the top, each pixel 0xAARRGGBB with the colours not multiplied by the opacity.
struct Bitmap {
    int width = 0;
    int height = 0;
    /// `width` times `height` pixels; shared, since pictures are copied about.
    std::shared_ptr<std::vector<std::uint32_t> const> pixels;

    friend bool operator==(Bitmap const& a, Bitmap const& b)
    {
        bool const haveSamePixels = a.pixels == b.pixels || (a.pixels && b.pixels && *a.pixels == *b.pixels);
        return a.width == b.width && a.height == b.height && haveSamePixels;
    }
};

/// The description of a picture. It costs little to make and to compare; the pixels of files are found when it is
/// painted.
struct Image {
    std::variant<SystemSymbol, FileIcon, Bitmap> source;
    /// Width and height in points; zero leaves the picture at its natural size.
    int pointSize = 0;
    /// For people who do not see the picture; empty where it only decorates.
    std::string accessibilityDescription;
    /// From 0, which shows nothing, to 1.
    double opacity = 1;
    friend bool operator==(Image const&, Image const&) = default;

    static Image systemSymbol(std::string name, std::string accessibilityDescription = {})
    {
        return { SystemSymbol { std::move(name) }, 0, std::move(accessibilityDescription) };
    }
    static Image iconForFile(FileURL url, int pointSize) { return { FileIcon { std::move(url) }, pointSize, {} }; }
};

}
