#pragma once

#include <QByteArray>
#include <QImage>

#include <atomic>

namespace marrowick {

/// The picture in the file at `path`, no larger than a square of `pixels`; null where the file is no picture, or one that
/// would take much memory or time. Ends soon after `isCancelled` is set, with nothing. Any thread.
QImage readPicture(QByteArray const& path, int pixels, std::atomic<bool> const& isCancelled);

}
