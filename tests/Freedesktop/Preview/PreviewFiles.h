#pragma once

#include "Platform/FileURL.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QTemporaryDir>

#include <utility>
#include <vector>

namespace marrowick {

/// A folder of files to preview, which ends with the test.
class PreviewFiles {
public:
    FileURL url(QByteArray const& name) const;
    FileURL write(QByteArray const& name, QByteArray const& content) const;
    /// A file of `size` bytes that begins with `content` and has nothing on the disk after it.
    FileURL writeSparse(QByteArray const& name, QByteArray const& content, qint64 size) const;
    FileURL makeFolder(QByteArray const& name) const;
    FileURL makeFifo(QByteArray const& name) const;

private:
    QTemporaryDir folder_;
};

/// The file of a picture in the format that is named as the toolkit names it.
QByteArray imageFile(char const* format, QImage const& image);

/// Left half red, right half blue.
QImage twoColours(QSize size);

/// A PNG file's beginning that promises a picture of this size.
QByteArray pngHeader(QSize size);

/// A JPEG file whose camera was turned: `orientation` as EXIF counts it.
QByteArray jpegWithOrientation(QImage const& image, char orientation);

/// The file of a PDF document of these objects, the first of which, number 1, is its catalog; `trailer` is added to the
/// trailer.
QByteArray pdfFile(std::vector<QByteArray> const& objects, QByteArray const& trailer = {});

/// A stream object's text.
QByteArray pdfStream(QByteArray const& dictionary, QByteArray const& content);

/// A document whose pages have these texts.
QByteArray pdfPages(std::vector<QByteArray> const& texts, QByteArray const& trailer = {});

/// A document of one page that would take years to draw.
QByteArray endlessPdf();

}
