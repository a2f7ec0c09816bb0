#pragma once

#include "Freedesktop/Preview/BackgroundWork.h"
#include "Freedesktop/Preview/PdfFile.h"

#include <QAbstractScrollArea>

#include <map>
#include <memory>
#include <set>
#include <vector>

namespace marrowick {

/// The pages of a PDF file in a column. Only those in sight, and the next, are drawn, in the background.
class PdfView final : public QAbstractScrollArea {
public:
    /// `work` outlives this.
    PdfView(BackgroundWork& work, QWidget* parent);
    ~PdfView() override;

    /// Null for none.
    void show(std::shared_ptr<PdfFile> file);

    /// As wide as the widest page on paper, as high as its pages, as far as `room` allows.
    QSize wantedSize(QSize room) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    bool event(QEvent* event) override;

private:
    struct Drawn {
        QImage image;
        QString text;
    };
    struct Range {
        int first = 0;
        int last = -1;
        bool contains(int index) const { return index >= first && index <= last; }
    };

    void layOut();
    QRect placeOf(int index) const;
    QSize pixelsOf(int index) const;
    Range visiblePages() const;
    void drawNext();
    void draw(int index);
    void received(int index, QSize pixels, PdfPage page);
    void dropFarPages();
    void forgetDrawings();
    void describe();
    void paintPage(QPainter& painter, int index);

    BackgroundWork& work_;
    std::shared_ptr<PdfFile> file_;
    /// Where the pages begin, in points from the top.
    std::vector<double> tops_;
    std::map<int, Drawn> drawn_;
    std::set<int> failed_;
    /// The page that is being drawn.
    int pending_ = -1;
    std::shared_ptr<LoadLimit> limit_;
};

}
