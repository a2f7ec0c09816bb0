#include "Freedesktop/Preview/PdfView.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <utility>

namespace marrowick {

namespace {

constexpr int margin = 12;
constexpr double screenPointsPerPoint = 96.0 / 72.0;
constexpr int scrollStep = 40;
constexpr double mostPixelsOfAPage = 16'000'000;
constexpr qsizetype mostBytesOfDrawings = 96 * 1024 * 1024;
/// So that places can be told in whole numbers.
constexpr double tallestColumn = 1e9;
constexpr std::chrono::seconds patience(20);

}

PdfView::PdfView(BackgroundWork& work, QWidget* parent)
    : QAbstractScrollArea(parent)
    , work_(work)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setBackgroundRole(QPalette::Dark);
    verticalScrollBar()->setSingleStep(scrollStep);
}

PdfView::~PdfView()
{
    forgetDrawings();
}

void PdfView::show(std::shared_ptr<PdfFile> file)
{
    forgetDrawings();
    file_ = std::move(file);
    layOut();
    verticalScrollBar()->setValue(0);
    describe();
}

QSize PdfView::wantedSize(QSize room) const
{
    if (!file_)
        return {};
    double width = 0;
    double height = 0;
    for (auto const& page : file_->pageSizes()) {
        width = std::max(width, page.width() * screenPointsPerPoint);
        height += page.height() * screenPointsPerPoint + margin;
    }
    auto const whole
        = [](double length, int most) { return static_cast<int>(std::ceil(std::min(length, double(most)))); };
    int const bar = verticalScrollBar()->sizeHint().width();
    return { whole(width + 2 * margin + bar, room.width()), whole(height + margin, room.height()) };
}

void PdfView::layOut()
{
    tops_.clear();
    double top = margin;
    double const room = std::max(viewport()->width() - 2 * margin, 1);
    for (auto const& page : file_ ? file_->pageSizes() : std::vector<QSizeF>()) {
        tops_.push_back(top);
        double const scale = std::min(screenPointsPerPoint, room / page.width());
        top += std::max(std::round(page.height() * scale), 1.0) + margin;
    }
    tops_.push_back(top);
    int const height = static_cast<int>(std::min(top, tallestColumn));
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, height - viewport()->height()));
    viewport()->update();
}

QRect PdfView::placeOf(int index) const
{
    auto const& page = file_->pageSizes()[static_cast<std::size_t>(index)];
    double const top = tops_[static_cast<std::size_t>(index)];
    double const height = tops_[static_cast<std::size_t>(index) + 1] - top - margin;
    double const room = std::max(viewport()->width() - 2 * margin, 1);
    double const width = std::max(std::round(std::min(room, page.width() * screenPointsPerPoint)), 1.0);
    return { static_cast<int>((viewport()->width() - width) / 2), static_cast<int>(top) - verticalScrollBar()->value(),
        static_cast<int>(width), static_cast<int>(height) };
}

QSize PdfView::pixelsOf(int index) const
{
    auto size = QSizeF(placeOf(index).size()) * devicePixelRatioF();
    if (double const pixels = size.width() * size.height(); pixels > mostPixelsOfAPage)
        size *= std::sqrt(mostPixelsOfAPage / pixels);
    return size.toSize().expandedTo({ 1, 1 });
}

PdfView::Range PdfView::visiblePages() const
{
    if (!file_)
        return {};
    double const top = verticalScrollBar()->value();
    auto const pageAt = [this](double y) {
        auto const next = std::upper_bound(tops_.begin(), tops_.end() - 1, y);
        return std::max(static_cast<int>(next - tops_.begin()) - 1, 0);
    };
    return { pageAt(top), pageAt(top + viewport()->height()) };
}

void PdfView::drawNext()
{
    auto const visible = visiblePages();
    Range const wanted { visible.first, std::min(visible.last + 1, static_cast<int>(tops_.size()) - 2) };
    if (pending_ >= 0) {
        if (!wanted.contains(pending_))
            limit_->cancel();
        return;
    }
    if (!file_ || !isVisible())
        return;
    for (int index = wanted.first; index <= wanted.last; ++index) {
        auto const found = drawn_.find(index);
        bool const isDrawn = found != drawn_.end() && found->second.image.size() == pixelsOf(index);
        if (!isDrawn && !failed_.contains(index)) {
            draw(index);
            return;
        }
    }
}

void PdfView::draw(int index)
{
    pending_ = index;
    limit_ = std::make_shared<LoadLimit>(patience);
    work_.run([this, index, pixels = pixelsOf(index), file = file_, limit = limit_] {
        auto page = file->page(index, pixels, limit);
        // Whether this view is still there is known on its own thread only.
        return [this, index, pixels, limit, page = std::move(page)] {
            if (limit == limit_)
                received(index, pixels, page);
        };
    });
}

void PdfView::received(int index, QSize pixels, PdfPage page)
{
    bool const isUnwanted = page.image.isNull() && !visiblePages().contains(index);
    pending_ = -1;
    limit_.reset();
    if (!page.image.isNull()) {
        drawn_[index] = { std::move(page.image), std::move(page.text) };
        // What is asked for is what was made, whatever a page's rounding gives.
        if (drawn_[index].image.size() != pixels)
            drawn_[index].image = drawn_[index].image.scaled(pixels);
        dropFarPages();
    } else if (!isUnwanted) {
        failed_.insert(index);
    }
    describe();
    viewport()->update();
    drawNext();
}

void PdfView::dropFarPages()
{
    auto const visible = visiblePages();
    qsizetype bytes = 0;
    for (auto const& [index, page] : drawn_)
        bytes += page.image.sizeInBytes();
    while (bytes > mostBytesOfDrawings && !drawn_.empty()) {
        int const before = visible.first - drawn_.begin()->first;
        int const after = drawn_.rbegin()->first - visible.last;
        if (before <= 1 && after <= 1)
            return;
        auto const far = before > after ? drawn_.begin() : std::prev(drawn_.end());
        bytes -= far->second.image.sizeInBytes();
        drawn_.erase(far);
    }
}

void PdfView::forgetDrawings()
{
    if (limit_)
        limit_->cancel();
    limit_.reset();
    pending_ = -1;
    drawn_.clear();
    failed_.clear();
}

void PdfView::describe()
{
    if (!file_)
        return;
    int const page = visiblePages().first;
    auto const found = drawn_.find(page);
    setAccessibleName(QStringLiteral("Page %1 of %2").arg(page + 1).arg(file_->pageSizes().size()));
    setAccessibleDescription(found == drawn_.end() ? QString() : found->second.text);
}

void PdfView::paintPage(QPainter& painter, int index)
{
    auto const place = placeOf(index);
    painter.fillRect(place, Qt::white);
    if (auto const found = drawn_.find(index); found != drawn_.end()) {
        auto image = found->second.image;
        image.setDevicePixelRatio(devicePixelRatioF());
        if (image.size() == pixelsOf(index) && (QSizeF(place.size()) * devicePixelRatioF()).toSize() == image.size())
            painter.drawImage(place.topLeft(), image);
        else
            painter.drawImage(place, found->second.image);
        return;
    }
    painter.setPen(Qt::darkGray);
    auto const text = failed_.contains(index) ? QStringLiteral("The page cannot be shown.") : QStringLiteral("\u2026");
    painter.drawText(place & viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, text);
}

void PdfView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    auto const visible = visiblePages();
    for (int index = visible.first; index <= visible.last; ++index)
        paintPage(painter, index);
    drawNext();
}

void PdfView::resizeEvent(QResizeEvent* event)
{
    // What is in sight stays there.
    auto const* const bar = verticalScrollBar();
    double const part = bar->maximum() > 0 ? double(bar->value()) / bar->maximum() : 0;
    layOut();
    verticalScrollBar()->setValue(static_cast<int>(std::round(part * verticalScrollBar()->maximum())));
    QAbstractScrollArea::resizeEvent(event);
}

void PdfView::scrollContentsBy(int, int)
{
    describe();
    viewport()->update();
}

bool PdfView::event(QEvent* event)
{
    if (event->type() == QEvent::ScreenChangeInternal)
        viewport()->update();
    return QAbstractScrollArea::event(event);
}

}
