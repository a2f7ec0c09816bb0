#include "Freedesktop/Interface/MenuTracking.h"

#include "Freedesktop/Interface/MenuView.h"

#include <QApplication>
#include <QPointer>

#include <utility>

namespace marrowick {

MenuTracking::HandlerScope::HandlerScope(MenuTracking& tracking)
    : tracking_(tracking)
{
    ++tracking_.handlers_;
}

MenuTracking::HandlerScope::~HandlerScope()
{
    if (--tracking_.handlers_ == 0 && !tracking_.retired_.empty())
        tracking_.queueDeletion();
}

MenuTracking::MenuTracking(FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate)
    : events_(events)
    , gate_(std::move(gate))
{
}

MenuTracking::~MenuTracking()
{
    close();
    std::exchange(retired_, {}).clear();
}

QStyle& MenuTracking::style()
{
    if (!style_)
        style_ = std::make_unique<MenuStyle>();
    return *style_;
}

MenuView& MenuTracking::begin(std::shared_ptr<Menu> const& menu)
{
    close();
    // Views that wait for their deletion still hold the style.
    if (style_ && !style_->isCurrent() && retired_.empty())
        style_.reset();
    root_ = std::make_unique<MenuView>(*this, menu, menu, nullptr);
    return *root_;
}

bool MenuTracking::isOpen() const
{
    return root_ && root_->isVisible();
}

void MenuTracking::close()
{
    while (isOpen()) {
        auto* const popup = QApplication::activePopupWidget();
        if (!popup || !popup->close()) {
            root_->hide();
            break;
        }
    }
    if (root_)
        ended(*root_);
}

void MenuTracking::choose(std::shared_ptr<Menu> root, std::shared_ptr<MenuItem> item, Event event)
{
    close();
    auto parent = item->menu();
    auto run = [this, root = std::move(root), parent = std::move(parent), item = std::move(item), event] {
        FreedesktopEvents::Scope const current(events_, event);
        if (auto const action = item->action)
            action(*item);
    };
    queue(std::move(run));
}

void MenuTracking::ended(MenuView& view)
{
    if (root_.get() == &view)
        retire(std::move(root_));
}

void MenuTracking::retire(std::unique_ptr<MenuView> view)
{
    retired_.push_back(std::move(view));
    if (handlers_ == 0)
        queueDeletion();
}

void MenuTracking::queueDeletion()
{
    queue([this] {
        if (handlers_ == 0)
            std::exchange(retired_, {}).clear();
    });
}

void MenuTracking::queue(std::function<void()> work)
{
    auto deliver = [this, work = std::move(work)]() mutable {
        gate_->deliver([isAlive = QPointer(&context_), work = std::move(work)] {
            if (isAlive)
                work();
        });
    };
    QMetaObject::invokeMethod(&context_, std::move(deliver), Qt::QueuedConnection);
}

void MenuTracking::pressedOutside(QPoint position)
{
    closingPress_ = position;
    sinceClosingPress_.start();
}

bool MenuTracking::wasJustClosedAt(QPoint position) const
{
    return sinceClosingPress_.isValid() && sinceClosingPress_.elapsed() < QApplication::doubleClickInterval()
        && (position - closingPress_).manhattanLength() < QApplication::startDragDistance();
}

}
