#pragma once

#include "Platform/FileURL.h"
#include "Platform/Menu.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace marrowick {

/// The class of every menu that the program builds: it fills itself each time it opens, and keys act on its highlighted
/// entry.
class MWMenu final : public Menu {
public:
    static std::shared_ptr<MWMenu> make(std::string title);

    /// Runs before every opening. It holds the menu weakly, or the menu would own itself.
    std::function<void()> refresh;

    /// Where entries chosen from this menu are copied to, in a menu of templates; absent in ordinary menus.
    std::optional<FileURL> copyDestination;

    /// The entry of this menu that is highlighted, or was last; null when there is none or it is gone.
    std::shared_ptr<MenuItem> lastHighlightedItem() const { return lastHighlightedItem_.lock(); }

    void menuNeedsUpdate(Menu& menu) override;
    void willHighlight(Menu& menu, std::shared_ptr<MenuItem> const& item) override;
    bool performKeyEquivalent(KeyEvent const& event, std::function<bool()> const& platformsOwn) override;

private:
    explicit MWMenu(std::string title);

    std::weak_ptr<MenuItem> lastHighlightedItem_;
};

}
