#include "Freedesktop/Interface/FreedesktopMenuPresenter.h"

#include "Freedesktop/Interface/Accessibility.h"
#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/FreedesktopStatusItem.h"
#include "Freedesktop/Interface/MenuView.h"
#include "Platform/MenuPlacement.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <climits>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

std::vector<Screen> allScreens()
{
    std::vector<Screen> screens;
    for (auto const* screen : QGuiApplication::screens())
        screens.push_back({ rectFrom(screen->geometry()), rectFrom(screen->availableGeometry()) });
    return screens;
}

std::optional<QRect> geometryOf(StatusItem* item)
{
    auto const* const shown = dynamic_cast<FreedesktopStatusItem const*>(item);
    return shown ? shown->iconGeometry() : std::nullopt;
}

}

FreedesktopMenuPresenter::FreedesktopMenuPresenter(FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate)
    : tracking_(events, std::move(gate))
{
    installMenuAccessibility();
}

void FreedesktopMenuPresenter::popUp(std::shared_ptr<Menu> menu, StatusItem* item)
{
    auto const icon = geometryOf(item);
    // A host that owns the icon hears the release of the press that closed the menu, and takes it for a click.
    if (item && !icon && tracking_.wasJustClosedAt(QCursor::pos()))
        return;

    MenuTracking::HandlerScope const handler(tracking_);
    auto& view = tracking_.begin(menu);
    view.refresh();
    QRect const anchor = icon.value_or(QRect(QCursor::pos(), QSize(0, 0)));
    auto const place
        = [anchor](QSize size) { return pointFrom(placeMenu(rectFrom(anchor), sizeFrom(size), allScreens())); };
    // At the corner of the work area every menu is as high as it may be.
    view.popUp(place(QSize(INT_MAX / 4, INT_MAX / 4)), place);
}

void FreedesktopMenuPresenter::cancelTracking()
{
    if (tracking_.isOpen())
        tracking_.close();
}

}
