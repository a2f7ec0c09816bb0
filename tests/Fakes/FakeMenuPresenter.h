#pragma once

#include "Fakes/FakeEvents.h"
#include "Platform/MenuPresenter.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// Menus without a screen, and the user at them. It looks at menus and drives them only as a desktop side does. A step
/// that the user could not take (an entry that is not there, a menu that is not open) fails the test.
class FakeMenuPresenter final : public MenuPresenter {
public:
    explicit FakeMenuPresenter(FakeEvents& events);

    void popUp(std::shared_ptr<Menu> menu, StatusItem* item) override;
    void cancelTracking() override;

    bool isOpen() const { return !levels_.empty(); }
    std::size_t depth() const { return levels_.size(); }
    /// The deepest open menu; null when none is open.
    std::shared_ptr<Menu> menu() const;
    /// The entries of the deepest open menu: their titles, "---" for separators, disabled ones in square brackets.
    std::vector<std::string> shown() const;
    /// The entry of the deepest open menu; null, after failing the test, when there is none of that title.
    std::shared_ptr<MenuItem> item(std::string_view title) const;

    void highlight(std::string_view title);
    /// The pointer leaves the deepest open menu.
    void unhighlight();
    void openSubmenu(std::string_view title);
    void closeSubmenu();
    /// The desktop closes all menus.
    void close() { levels_.clear(); }
    /// Returns whether the menu that got the key says that it was handled.
    bool press(KeyEvent const& event);
    bool press(std::string_view characters, ModifierFlags flags = {});
    /// Clicks the entry of the deepest open menu: all menus close, then the entry acts.
    void choose(std::string_view title);

    /// The item beside which a menu was popped up last.
    StatusItem* poppedUpBeside = nullptr;
    int popUps = 0;
    int cancellations = 0;
    /// Keys that a menu left to the desktop, and what the desktop answers to them.
    int keysPassedOn = 0;
    bool platformsAnswer = false;

private:
    struct Level {
        std::shared_ptr<Menu> menu;
        std::weak_ptr<MenuItem> highlighted;
    };

    void open(std::shared_ptr<Menu> menu);

    FakeEvents& events_;
    std::vector<Level> levels_;
};

}
