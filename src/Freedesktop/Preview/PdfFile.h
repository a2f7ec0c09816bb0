#pragma once

#include "Freedesktop/Preview/LoadLimit.h"
#include "Freedesktop/Preview/RegularFileDevice.h"

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>

#include <memory>
#include <mutex>
#include <variant>
#include <vector>

namespace Poppler {
class Document;
}

namespace marrowick {

enum class PdfFailure {
    damaged,
    locked,
};

struct PdfPage {
    /// Null where the page could not be drawn within the limit.
    QImage image;
    /// The beginning of its text.
    QString text;
};

/// The pages of a PDF file. Any thread, one at a time; the others wait.
class PdfFile {
public:
    /// Reads what `device` holds, which is open.
    static std::variant<std::shared_ptr<PdfFile>, PdfFailure> open(
        std::unique_ptr<RegularFileDevice> device, LoadLimit const& limit);

    ~PdfFile();

    /// The sizes of the pages in points, at least one. Of a very long file the later pages are taken to be like the last
    /// that was measured.
    std::vector<QSizeF> const& pageSizes() const { return pageSizes_; }

    /// The page `index` drawn to fill `pixels`.
    PdfPage page(int index, QSize pixels, std::shared_ptr<LoadLimit const> const& limit);

private:
    explicit PdfFile(std::unique_ptr<RegularFileDevice> device);

    void measurePages(LoadLimit const& limit);

    std::mutex mutex_;
    std::unique_ptr<RegularFileDevice> device_;
    /// Reads from the device for as long as it lives.
    std::unique_ptr<Poppler::Document> document_;
    std::vector<QSizeF> pageSizes_;
};

}
