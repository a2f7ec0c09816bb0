#pragma once

#include "Fakes/FakeDispatch.h"
#include "Fakes/FakeEvents.h"
#include "Platform/StatusItem.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace marrowick {

/// What a status item was given, also after its end.
struct FakeStatusItemState {
    double length = 0;
    bool hasButton = true;
    bool isShown = false;
    std::optional<Image> image;
    std::function<void()> action;
    std::uint64_t eventMask = 0;
    std::function<std::shared_ptr<Menu>()> makeHostMenu;
};

/// A status area for one item, which the test clicks.
class FakeStatusBar final : public StatusBar {
public:
    FakeStatusBar(FakeEvents& events, FakeDispatch& dispatch)
        : events_(events)
        , dispatch_(dispatch)
    {
    }

    std::unique_ptr<StatusItem> makeStatusItem(double length) override
    {
        item->length = length;
        item->isShown = true;
        return std::make_unique<Item>(item);
    }

    /// A mouse event on the icon; it reaches the item's action only when the item asked for such events and no alert is up.
    void click(EventType type, ModifierFlags flags = {})
    {
        bool const isSent = (item->eventMask >> static_cast<unsigned>(type) & 1) != 0;
        if (item->isShown && item->action && isSent && !dispatch_.isHeld())
            events_.during(Event { type, flags }, item->action);
    }

    std::shared_ptr<FakeStatusItemState> const item = std::make_shared<FakeStatusItemState>();

private:
    class Item final : public StatusItem, private StatusItemButton {
    public:
        explicit Item(std::shared_ptr<FakeStatusItemState> state)
            : state_(std::move(state))
        {
        }
        ~Item() override { state_->isShown = false; }

        StatusItemButton* button() override { return state_->hasButton ? this : nullptr; }
        void setHostMenu(std::function<std::shared_ptr<Menu>()> makeMenu) override
        {
            state_->makeHostMenu = std::move(makeMenu);
        }

    private:
        void setImage(Image const& image) override { state_->image = image; }
        void setAction(std::function<void()> action) override { state_->action = std::move(action); }
        void sendActionOn(std::uint64_t eventMask) override { state_->eventMask = eventMask; }

        std::shared_ptr<FakeStatusItemState> state_;
    };

    FakeEvents& events_;
    FakeDispatch& dispatch_;
};

}
