#pragma once

#include "Platform/Image.h"

#include <QImage>

namespace marrowick {

/// The pixels as the toolkit has them; null where there are fewer than width and height promise.
QImage imageFrom(Bitmap const& bitmap);

/// Copies the pixels. Any thread.
Bitmap bitmapFrom(QImage const& image);

}
