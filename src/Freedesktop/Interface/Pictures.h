#pragma once

#include <QByteArray>
#include <QIcon>

#include <optional>

namespace marrowick {

/// The content of the regular file at `path`; absent for everything else, which is not waited for, and for a file larger
/// than `limit`.
std::optional<QByteArray> readRegularFile(char const* path, qsizetype limit);

/// An icon of the picture file at `path`, of a few small sizes. Null when there is none that can be shown with bounded
/// work: the file can come from anywhere.
QIcon pictureIcon(char const* path);

/// Whether drawing the SVG text takes work in proportion to its size and reads nothing else: references that multiply each
/// other, nesting that has no end and other files are refused.
bool isHarmlessSvg(QByteArray const& text);

}
