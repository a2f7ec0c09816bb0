#include "Freedesktop/Interface/FreedesktopStatusItem.h"

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/FreedesktopEvents.h"
#include "Freedesktop/Interface/Icons.h"

#include <QCoreApplication>

#include <utility>

namespace marrowick {

namespace {

/// The picture in the sizes that panels use, since a host gets pixels and chooses among them.
QIcon iconForHosts(Image const& image)
{
    auto const source = panelIconFor(image);
    QIcon icon;
    for (int const side : { 16, 22, 24, 32, 48, 64 })
        icon.addPixmap(source.pixmap(QSize(side, side), 1));
    return icon;
}

}

void FreedesktopStatusItem::Button::setImage(Image const& image)
{
    image_ = image;
    item_.updateImage();
}

void FreedesktopStatusItem::Button::setAction(std::function<void()> action)
{
    action_ = std::move(action);
}

bool FreedesktopStatusItem::Button::sendsActionOn(EventType type) const
{
    return (eventMask_ >> static_cast<unsigned>(type) & 1) != 0;
}

void FreedesktopStatusItem::Button::sendAction() const
{
    // A copy, since the action may set another one.
    if (auto const action = action_)
        action();
}

FreedesktopStatusItem::FreedesktopStatusItem(FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate, Log& log)
    : events_(events)
    , gate_(std::move(gate))
    , log_(log)
    , button_(*this)
    , areas_([this](StatusArea area) { show(area); })
{
    if (auto const area = areas_.area())
        show(*area);
}

FreedesktopStatusItem::~FreedesktopStatusItem() = default;

void FreedesktopStatusItem::setHostMenu(std::function<std::shared_ptr<Menu>()> makeMenu)
{
    auto previous = std::exchange(hostMenu_, std::make_unique<HostMenu>(events_, gate_, std::move(makeMenu)));
    if (notifierIcon_)
        notifierIcon_->setContextMenu(&hostMenu_->exported());
}

std::optional<QRect> FreedesktopStatusItem::iconGeometry() const
{
    return embeddedIcon_ ? embeddedIcon_->globalGeometry() : std::nullopt;
}

void FreedesktopStatusItem::show(StatusArea area)
{
    notifierIcon_.reset();
    embeddedIcon_.reset();
    switch (area.kind) {
    case StatusArea::Kind::none:
        if (!std::exchange(hasToldOfMissingArea_, true))
            log_.write("Marrowick: there is no status area yet; the icon appears when there is one");
        break;
    case StatusArea::Kind::statusNotifier:
        showInNotifierHost();
        break;
    case StatusArea::Kind::embedding:
        showEmbedded(area.manager);
        break;
    }
}

void FreedesktopStatusItem::showInNotifierHost()
{
    notifierIcon_ = std::make_unique<QSystemTrayIcon>();
    QObject::connect(notifierIcon_.get(), &QSystemTrayIcon::activated,
        [this](QSystemTrayIcon::ActivationReason reason) { activated(reason); });
    if (hostMenu_)
        notifierIcon_->setContextMenu(&hostMenu_->exported());
    updateImage();
}

void FreedesktopStatusItem::showEmbedded(xcb_window_t manager)
{
    embeddedIcon_ = std::make_unique<TrayIconWindow>(manager, button_.image().value_or(Image {}),
        [this](Qt::MouseButton mouseButton, Qt::KeyboardModifiers modifiers) { pressed(mouseButton, modifiers); });
    QObject::connect(embeddedIcon_.get(), &TrayIconWindow::clicked, [this] {
        if (gate_->turnsUserAway())
            return;
        FreedesktopEvents::Scope const scope(events_, Event { EventType::applicationDefined, events_.modifierFlags() });
        button_.sendAction();
    });
}

void FreedesktopStatusItem::updateImage()
{
    auto const& image = button_.image();
    if (!image)
        return;
    if (embeddedIcon_)
        embeddedIcon_->setImage(*image);
    if (notifierIcon_) {
        notifierIcon_->setIcon(iconForHosts(*image));
        notifierIcon_->setToolTip(displayText(image->accessibilityDescription));
        notifierIcon_->show();
    }
}

void FreedesktopStatusItem::pressed(Qt::MouseButton mouseButton, Qt::KeyboardModifiers modifiers)
{
    if (mouseButton == Qt::LeftButton)
        clicked({ EventType::leftMouseUp, modifierFlagsFrom(modifiers) });
    else if (mouseButton == Qt::RightButton)
        clicked({ EventType::rightMouseUp, modifierFlagsFrom(modifiers) });
}

void FreedesktopStatusItem::activated(QSystemTrayIcon::ActivationReason reason)
{
    // First of all: the host has not told which keys were held, and the user lets go of them soon.
    auto const flags = events_.modifierFlags();
    switch (reason) {
    case QSystemTrayIcon::Trigger:
        clicked({ EventType::leftMouseUp, flags });
        break;
    case QSystemTrayIcon::Context:
        clicked({ EventType::rightMouseUp, flags });
        break;
    case QSystemTrayIcon::Unknown:
    case QSystemTrayIcon::DoubleClick:
    case QSystemTrayIcon::MiddleClick:
        break;
    }
}

void FreedesktopStatusItem::clicked(Event event)
{
    if (!button_.sendsActionOn(event.type) || gate_->turnsUserAway())
        return;
    FreedesktopEvents::Scope const scope(events_, event);
    button_.sendAction();
}

}
