#pragma once

#include "Platform/FileURL.h"
#include "Platform/Image.h"

#include <functional>
#include <optional>

namespace marrowick {

/// Pictures of what files hold. Main thread only.
class Thumbnails {
public:
    virtual ~Thumbnails() = default;

    /// Finds or makes a picture of the item that fits a square of `pointSize` points, each `scale` pixels wide. `done` comes
    /// later, once, with none where there is no picture.
    virtual void generate(
        FileURL const& url, int pointSize, double scale, std::function<void(std::optional<Bitmap>)> done)
        = 0;
};

}
