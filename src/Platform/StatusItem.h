#pragma once

#include "Platform/Image.h"
#include "Platform/Menu.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace marrowick {

/// The clickable face of a status item. Main thread only.
class StatusItemButton {
public:
    virtual ~StatusItemButton() = default;

    /// Shows `image`; its accessibility description is the item's name for screen readers and hosts.
    virtual void setImage(Image const& image) = 0;

    /// What a click with one of the mouse buttons named by `sendActionOn` does. While it runs, `Events::currentEvent()`
    /// is the click.
    virtual void setAction(std::function<void()> action) = 0;

    /// A set of `EventType`s, each as the bit of its number.
    virtual void sendActionOn(std::uint64_t eventMask) = 0;
};

/// One place in the status area. It shows as soon as the desktop has a status area and again whenever one comes back.
/// Main thread only.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Null where the desktop gave the item no face.
    virtual StatusItemButton* button() = 0;

    /// Makes the menu for status areas that keep secondary clicks to themselves; it is made when first needed.
    virtual void setHostMenu(std::function<std::shared_ptr<Menu>()> makeMenu) = 0;
};

/// The desktop's status area. Main thread only.
class StatusBar {
public:
    virtual ~StatusBar() = default;

    /// The item is square where `length` is `squareLength`. Without a status area the item waits for one.
    virtual std::unique_ptr<StatusItem> makeStatusItem(double length) = 0;

    static constexpr double squareLength = -2;
};

}
