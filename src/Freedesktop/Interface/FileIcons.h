#pragma once

#include "Platform/FileURL.h"

#include <QIcon>

#include <cstdint>

namespace marrowick {

/// What a file is, as far as the program's own drawings tell files apart.
enum class FileShape : std::uint8_t {
    document,
    folder,
    application,
};

struct FoundFileIcon {
    /// Null where the icon theme has nothing for the file.
    QIcon icon;
    FileShape shape = FileShape::document;
};

/// The icon that the desktop's file managers show for the file at `url`: of what a link leads to, of the application
/// that a desktop entry stands for. Reads the disk.
FoundFileIcon findFileIcon(FileURL const& url);

}
