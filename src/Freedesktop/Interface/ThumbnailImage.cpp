#include "Freedesktop/Interface/ThumbnailImage.h"

#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Interface/Pictures.h"

#include <QFile>
#include <QImageReader>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace marrowick {

namespace {

/// Far more than a photo takes.
constexpr qint64 largestPicture = 256LL * 1024 * 1024;
constexpr qint64 largestSvg = 1024 * 1024;
/// What one decoded picture may take; the toolkit's own measure.
constexpr int mostMegabytes = 128;

/// A file that has nothing more to tell once it is cancelled.
class CancellableFile : public QFile {
public:
    explicit CancellableFile(std::atomic<bool> const& isCancelled)
        : isCancelled_(isCancelled)
    {
    }

protected:
    qint64 readData(char* data, qint64 size) override { return isCancelled_ ? -1 : QFile::readData(data, size); }

private:
    std::atomic<bool> const& isCancelled_;
};

bool openRegularFile(QFile& file, QByteArray const& path)
{
    FileDescriptor descriptor(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status { };
    if (!descriptor.isOpen() || fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode)
        || status.st_size > largestPicture)
        return false;
    return file.open(descriptor.release(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}

bool isHarmless(QFile& file, QByteArray const& format)
{
    // A compressed drawing tells nothing of its size.
    if (format == "svgz")
        return false;
    if (format != "svg")
        return true;
    if (file.size() > largestSvg)
        return false;
    file.seek(0);
    bool const isHarmless = isHarmlessSvg(file.readAll());
    file.seek(0);
    return isHarmless;
}

bool fitsInMemory(QImageReader const& reader)
{
    constexpr qint64 bytesPerPixel = 4;
    constexpr qint64 bytesPerMegabyte = 1024 * 1024;
    auto const size = reader.size();
    // Drawings are drawn at any size.
    if (reader.format() == "svg" || size.isEmpty())
        return true;
    // Photos are decoded at a fraction of their size, but some six bytes for each pixel can be kept meanwhile.
    constexpr qint64 mostJpegPixels = qint64 { 128 } * 1024 * 1024;
    if (reader.format() == "jpeg")
        return qint64 { size.width() } * size.height() <= mostJpegPixels;
    return qint64 { size.width() } * size.height() * bytesPerPixel <= mostMegabytes * bytesPerMegabyte;
}

}

QImage readPicture(QByteArray const& path, int pixels, std::atomic<bool> const& isCancelled)
{
    CancellableFile file(isCancelled);
    if (!openRegularFile(file, path))
        return {};
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!reader.canRead())
        return {};
    if (!isHarmless(file, reader.format()) || !fitsInMemory(reader))
        return {};

    QSize const wanted(pixels, pixels);
    auto const size = reader.size();
    bool const isLarger = std::max(size.width(), size.height()) > pixels;
    if (!size.isEmpty() && (isLarger || reader.format() == "svg"))
        reader.setScaledSize(size.scaled(wanted, Qt::KeepAspectRatio).expandedTo({ 1, 1 }));
    auto const image = reader.read();
    if (image.isNull() || std::max(image.width(), image.height()) <= pixels)
        return image;
    return image.scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

}
