#include "Freedesktop/Preview/PreviewWindow.h"

#include "Freedesktop/Files/FreedesktopFormats.h"
#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/TaskbarEntry.h"
#include "Freedesktop/Preview/CardView.h"
#include "Freedesktop/Preview/ImageView.h"
#include "Freedesktop/Preview/PdfView.h"
#include "Freedesktop/Preview/TextView.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace marrowick {

namespace {

constexpr QSize smallestWindow(360, 260);
constexpr double partOfScreen = 0.8;
/// A window that changes while the user looks is more of a nuisance than one that comes a little later.
constexpr std::chrono::milliseconds patienceBeforeShowing(150);
constexpr int noteMargin = 6;

QScreen* screenInUse(QWidget const& window)
{
    auto* const here = window.isVisible() ? window.screen() : QGuiApplication::screenAt(QCursor::pos());
    return here ? here : QGuiApplication::primaryScreen();
}

QSize roomOn(QScreen const& screen)
{
    return (QSizeF(screen.availableGeometry().size()) * partOfScreen).toSize();
}

/// `size` around `centre`, moved so far that `area` holds it.
QRect placed(QSize size, QPoint centre, QRect const& area)
{
    QRect place(QPoint(), size);
    place.moveCenter(centre);
    place.moveLeft(std::max(std::min(place.left(), area.right() + 1 - size.width()), area.left()));
    place.moveTop(std::max(std::min(place.top(), area.bottom() + 1 - size.height()), area.top()));
    return place;
}

/// A star in brackets would stand for unsaved changes.
QString windowTitleText(QString text)
{
    return text.replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

QString inLines(FileFacts const& facts)
{
    QStringList lines { facts.kind, facts.size, facts.date };
    lines.removeAll(QString());
    return lines.join(u'\n');
}

}

PreviewWindow::PreviewWindow(std::shared_ptr<DeliveryGate> gate, std::chrono::milliseconds patience)
    : QWidget(nullptr,
        Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint)
    , dateLocale_(dateLocale(std::getenv("LC_ALL"), std::getenv("LC_TIME"), std::getenv("LANG")))
    , work_(std::move(gate))
    , views_(new QStackedWidget(this))
    , card_(new CardView(views_))
    , image_(new ImageView(views_))
    , text_(new TextView(views_))
    , pdf_(new PdfView(work_, views_))
    , note_(new QLabel(this))
{
    setMinimumSize(smallestWindow);
    setFocusPolicy(Qt::StrongFocus);
    for (auto* view : std::initializer_list<QWidget*> { card_, image_, text_, pdf_ }) {
        views_->addWidget(view);
        view->installEventFilter(this);
    }
    note_->setTextFormat(Qt::PlainText);
    note_->setAlignment(Qt::AlignCenter);
    note_->setMargin(noteMargin);
    note_->hide();

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(views_, 1);
    column->addWidget(note_);

    showing_.setSingleShot(true);
    showing_.setInterval(patienceBeforeShowing);
    connect(&showing_, &QTimer::timeout, this, [this] { showThatItLoads(); });
    givingUp_.setSingleShot(true);
    givingUp_.setInterval(patience);
    connect(&givingUp_, &QTimer::timeout, this, [this] { giveUp(); });
}

PreviewWindow::~PreviewWindow()
{
    cancelLoading();
    pdf_->show(nullptr);
}

void PreviewWindow::setDataSource(PreviewPanelDataSource* dataSource)
{
    dataSource_ = dataSource;
}

void PreviewWindow::makeKeyAndOrderFront()
{
    if (isVisible()) {
        bringToFront();
        return;
    }
    isCalled_ = true;
    showing_.start();
}

void PreviewWindow::reloadData()
{
    auto const url = dataSource_ && dataSource_->numberOfPreviewItems(*this) > 0 ? dataSource_->previewPanel(*this, 0)
                                                                                 : std::nullopt;
    if (url)
        load(*url);
    else
        close();
}

void PreviewWindow::load(FileURL const& url)
{
    cancelLoading();
    loading_ = url;
    limit_ = std::make_shared<LoadLimit>(givingUp_.intervalAsDuration());
    showing_.start();
    givingUp_.start();

    auto const* screen = screenInUse(*this);
    double const scale = screen ? screen->devicePixelRatio() : 1;
    QSize const room = screen ? (QSizeF(roomOn(*screen)) * scale).toSize() : smallestWindow;
    work_.run([this, request = PreviewRequest { url, room, scale, dateLocale_ }, limit = limit_] {
        auto content = std::make_shared<PreviewContent>(loadPreview(request, limit));
        return [this, url = request.url, limit, content] {
            if (limit == limit_)
                received(url, std::move(*content));
        };
    });
}

void PreviewWindow::cancelLoading()
{
    showing_.stop();
    givingUp_.stop();
    if (limit_)
        limit_->cancel();
    limit_.reset();
    loading_.reset();
}

void PreviewWindow::showThatItLoads()
{
    if (loading_)
        showCard(*loading_, {}, QStringLiteral("Loading\u2026"));
    else if (isCalled_)
        bringToFront();
}

void PreviewWindow::giveUp()
{
    // A library need not come back from a hostile file.
    auto const url = *loading_;
    cancelLoading();
    showCard(url, {}, QStringLiteral("The item takes too long to be shown."));
}

struct PreviewWindow::Show {
    PreviewWindow& window;
    FileURL const& url;
    FileFacts const& facts;
    QSize room;

    void operator()(CardContent const& content) const { window.showCard(url, facts, content.note); }

    void operator()(ImageContent& content) const
    {
        window.image_->show(std::move(content));
        window.image_->setAccessibleName(displayText(url.lastPathComponent()));
        window.present(*window.image_, window.image_->wantedSize(room), room);
    }

    void operator()(TextContent const& content) const
    {
        window.text_->show(content);
        window.text_->setAccessibleName(displayText(url.lastPathComponent()));
        window.note_->setText(QStringLiteral("Only the beginning is shown; the whole text has %1.").arg(facts.size));
        window.note_->setVisible(content.isBeginning);
        window.present(*window.text_, window.text_->wantedSize(room), room);
    }

    void operator()(PdfContent const& content) const
    {
        window.pdf_->show(content.file);
        window.present(*window.pdf_, window.pdf_->wantedSize(room), room);
    }
};

void PreviewWindow::received(FileURL const& url, PreviewContent content)
{
    cancelLoading();
    showItem(url, inLines(content.facts));
    auto const* screen = screenInUse(*this);
    std::visit(Show { *this, url, content.facts, screen ? roomOn(*screen) : smallestWindow }, content.shown);
}

void PreviewWindow::showItem(FileURL const& url, QString const& description)
{
    auto const name = displayText(url.lastPathComponent());
    setWindowTitle(windowTitleText(name));
    setAccessibleName(name);
    setAccessibleDescription(description);
    note_->hide();
    // What the other views hold is of another item.
    image_->clear();
    text_->clear();
    pdf_->show(nullptr);
}

void PreviewWindow::showCard(FileURL const& url, FileFacts const& facts, QString const& note)
{
    showItem(url, inLines(facts));
    card_->show(url, facts, note);
    card_->setAccessibleName(displayText(url.lastPathComponent()));
    card_->setAccessibleDescription(card_->text());
    present(*card_, card_->sizeHint(), smallestWindow.expandedTo(card_->sizeHint()));
}

void PreviewWindow::present(QWidget& view, QSize wanted, QSize room)
{
    views_->setCurrentWidget(&view);
    view.setFocus();
    if (note_->isVisibleTo(this))
        wanted.rheight() += note_->sizeHint().height();
    QSize const size = wanted.boundedTo(room).expandedTo(smallestWindow);
    auto const area = screenInUse(*this)->availableGeometry();
    auto const place = placed(size, isVisible() ? geometry().center() : area.center(), area);
    resize(size);
    if (place.topLeft() != geometry().topLeft())
        move(place.topLeft() - (geometry().topLeft() - pos()));
    if (std::exchange(isCalled_, false))
        bringToFront();
}

void PreviewWindow::bringToFront()
{
    isCalled_ = false;
    if (!isVisible())
        leaveOutOfTaskbars(*this);
    showNormal();
    raise();
    activateWindow();
}

bool PreviewWindow::handleKey(QKeyEvent const& event)
{
    if (event.matches(QKeySequence::Close)) {
        close();
        return true;
    }
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return false;
    auto const* const area = qobject_cast<QAbstractScrollArea*>(views_->currentWidget());
    auto const scroll = [area](QAbstractSlider::SliderAction action) {
        if (area)
            area->verticalScrollBar()->triggerAction(action);
    };
    switch (event.key()) {
    case Qt::Key_Escape:
    case Qt::Key_Space:
        close();
        return true;
    case Qt::Key_Up:
        scroll(QAbstractSlider::SliderSingleStepSub);
        return true;
    case Qt::Key_Down:
        scroll(QAbstractSlider::SliderSingleStepAdd);
        return true;
    case Qt::Key_PageUp:
        scroll(QAbstractSlider::SliderPageStepSub);
        return true;
    case Qt::Key_PageDown:
        scroll(QAbstractSlider::SliderPageStepAdd);
        return true;
    case Qt::Key_Home:
        scroll(QAbstractSlider::SliderToMinimum);
        return true;
    case Qt::Key_End:
        scroll(QAbstractSlider::SliderToMaximum);
        return true;
    default:
        return false;
    }
}

bool PreviewWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && handleKey(*static_cast<QKeyEvent*>(event)))
        return true;
    return QWidget::eventFilter(watched, event);
}

void PreviewWindow::keyPressEvent(QKeyEvent* event)
{
    if (!handleKey(*event))
        QWidget::keyPressEvent(event);
}

void PreviewWindow::closeEvent(QCloseEvent* event)
{
    isCalled_ = false;
    cancelLoading();
    QWidget::closeEvent(event);
}

}
