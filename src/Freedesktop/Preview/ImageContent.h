#pragma once

#include "Freedesktop/Preview/PreviewContent.h"

#include <QByteArray>
#include <QIODevice>
#include <QSize>

#include <optional>

namespace marrowick {

enum class ImageFailure {
    damaged,
    tooLarge,
};

/// The picture that `device` holds, decoded to fit `room`, never larger than it is. Takes a bounded amount of memory.
std::variant<ImageContent, ImageFailure> readImage(QIODevice& device, QSize room);

/// The drawing of an SVG text to fit `room`, at `scale` pixels for each of its points.
std::variant<ImageContent, ImageFailure> drawSvg(QByteArray const& text, QSize room, double scale);

}
