#include "Freedesktop/Preview/PdfFile.h"

#include <poppler-qt6.h>

#include <QVariant>

#include <algorithm>
#include <cmath>
#include <utility>

namespace marrowick {

namespace {

constexpr int mostMeasuredPages = 2000;
constexpr qsizetype longestText = 4000;
constexpr double pointsPerInch = 72;
constexpr double smallestSide = 1;
constexpr double largestSide = 20'000;
constexpr QSizeF letter(612, 792);

QSizeF sane(QSizeF size)
{
    auto const side = [](double length, double otherwise) {
        return std::isfinite(length) && length > 0 ? std::clamp(length, smallestSide, largestSide) : otherwise;
    };
    return { side(size.width(), letter.width()), side(size.height(), letter.height()) };
}

QVariant closureOf(LoadLimit const& limit)
{
    return QVariant::fromValue(static_cast<void*>(const_cast<LoadLimit*>(&limit)));
}

bool isLimitReached(QVariant const& closure)
{
    return static_cast<LoadLimit const*>(closure.value<void*>())->isReached();
}

QString beginningOfText(Poppler::Page const& page, LoadLimit const& limit)
{
    QString text;
    for (auto const& word : page.textList(Poppler::Page::Rotate0, isLimitReached, closureOf(limit))) {
        if (text.size() > longestText)
            break;
        text += word->text();
        text += word->hasSpaceAfter() ? u' ' : u'\n';
    }
    text.truncate(longestText);
    return text.trimmed();
}

/// What is wrong with a file is told where it is shown, and not line by line in the log.
void keepQuiet()
{
    static std::once_flag isDone;
    std::call_once(isDone, [] { Poppler::setDebugErrorFunction([](QString const&, QVariant const&) {}, QVariant()); });
}

}

PdfFile::PdfFile(std::unique_ptr<RegularFileDevice> device)
    : device_(std::move(device))
{
}

PdfFile::~PdfFile() = default;

std::variant<std::shared_ptr<PdfFile>, PdfFailure> PdfFile::open(
    std::unique_ptr<RegularFileDevice> device, LoadLimit const& limit)
{
    keepQuiet();
    std::shared_ptr<PdfFile> file(new PdfFile(std::move(device)));
    file->document_ = Poppler::Document::load(file->device_.get());
    if (!file->document_)
        return PdfFailure::damaged;
    if (file->document_->isLocked())
        return PdfFailure::locked;
    file->document_->setRenderHint(Poppler::Document::Antialiasing);
    file->document_->setRenderHint(Poppler::Document::TextAntialiasing);
    file->measurePages(limit);
    if (file->pageSizes_.empty())
        return PdfFailure::damaged;
    return file;
}

void PdfFile::measurePages(LoadLimit const& limit)
{
    int const count = std::max(document_->numPages(), 0);
    int const measured = std::min(count, mostMeasuredPages);
    for (int index = 0; index < measured && !limit.isReached(); ++index) {
        auto const page = document_->page(index);
        // A file that was cut off names pages that are not there.
        if (!page && index == 0)
            return;
        pageSizes_.push_back(page ? sane(page->pageSizeF()) : pageSizes_.back());
    }
    if (!pageSizes_.empty())
        pageSizes_.resize(static_cast<std::size_t>(std::min(count, 100 * mostMeasuredPages)), pageSizes_.back());
}

PdfPage PdfFile::page(int index, QSize pixels, std::shared_ptr<LoadLimit const> const& limit)
{
    std::scoped_lock const lock(mutex_);
    device_->setLimit(limit);
    PdfPage result;
    if (limit->isReached())
        return result;
    auto const page = document_->page(index);
    if (!page)
        return result;
    auto const size = sane(page->pageSizeF());
    auto image = page->renderToImage(pointsPerInch * pixels.width() / size.width(),
        pointsPerInch * pixels.height() / size.height(), 0, 0, pixels.width(), pixels.height(), Poppler::Page::Rotate0,
        nullptr, nullptr, isLimitReached, closureOf(*limit));
    if (limit->isReached())
        return result;
    result.image = std::move(image);
    result.text = beginningOfText(*page, *limit);
    return result;
}

}
