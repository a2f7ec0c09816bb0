#include "Fakes/FakeMenuPresenter.h"

#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

namespace marrowick {

FakeMenuPresenter::FakeMenuPresenter(FakeEvents& events)
    : events_(events)
{
}

void FakeMenuPresenter::popUp(std::shared_ptr<Menu> menu, StatusItem* item)
{
    levels_.clear();
    poppedUpBeside = item;
    ++popUps;
    open(std::move(menu));
}

void FakeMenuPresenter::cancelTracking()
{
    ++cancellations;
    levels_.clear();
}

std::shared_ptr<Menu> FakeMenuPresenter::menu() const
{
    return isOpen() ? levels_.back().menu : nullptr;
}

std::vector<std::string> FakeMenuPresenter::shown() const
{
    std::vector<std::string> titles;
    if (!isOpen())
        return titles;
    for (auto const& entry : menu()->items()) {
        if (entry->isSeparator())
            titles.emplace_back("---");
        else
            titles.push_back(entry->isEnabled ? entry->title : "[" + entry->title + "]");
    }
    return titles;
}

std::shared_ptr<MenuItem> FakeMenuPresenter::item(std::string_view title) const
{
    if (!isOpen()) {
        ADD_FAILURE() << "no menu is open in which to look for \"" << title << "\"";
        return nullptr;
    }
    auto const& items = menu()->items();
    auto const found = std::find_if(items.begin(), items.end(),
        [&](auto const& candidate) { return !candidate->isSeparator() && candidate->title == title; });
    if (found != items.end())
        return *found;
    ADD_FAILURE() << "the open menu has no entry \"" << title << "\"";
    return nullptr;
}

void FakeMenuPresenter::highlight(std::string_view title)
{
    auto const entry = item(title);
    if (!entry)
        return;
    auto& level = levels_.back();
    level.highlighted = entry;
    level.menu->willHighlight(*level.menu, entry);
}

void FakeMenuPresenter::unhighlight()
{
    if (!isOpen()) {
        ADD_FAILURE() << "no menu is open";
        return;
    }
    auto& level = levels_.back();
    level.highlighted.reset();
    level.menu->willHighlight(*level.menu, nullptr);
}

void FakeMenuPresenter::openSubmenu(std::string_view title)
{
    highlight(title);
    auto const entry = isOpen() ? levels_.back().highlighted.lock() : nullptr;
    if (entry && entry->submenu())
        open(entry->submenu());
    else
        ADD_FAILURE() << "the entry \"" << title << "\" has no submenu";
}

void FakeMenuPresenter::closeSubmenu()
{
    if (depth() > 1)
        levels_.pop_back();
    else
        ADD_FAILURE() << "no submenu is open";
}

bool FakeMenuPresenter::press(KeyEvent const& event)
{
    if (!isOpen()) {
        ADD_FAILURE() << "no menu is open";
        return false;
    }
    auto const highlighted = std::find_if(
        levels_.rbegin(), levels_.rend(), [](Level const& level) { return !level.highlighted.expired(); });
    // The menus may close while the key acts; then the one that is acting is all that stays.
    auto const receiver = highlighted == levels_.rend() ? levels_.back().menu : highlighted->menu;
    bool handled = false;
    events_.during(Event { event.type, event.flags }, [&] {
        handled = receiver->performKeyEquivalent(event, [this] {
            ++keysPassedOn;
            return platformsAnswer;
        });
    });
    return handled;
}

bool FakeMenuPresenter::press(std::string_view characters, ModifierFlags flags)
{
    return press(KeyEvent { EventType::keyDown, flags, std::string(characters) });
}

void FakeMenuPresenter::choose(std::string_view title)
{
    auto const entry = item(title);
    if (!entry)
        return;
    if (!entry->isEnabled || entry->submenu()) {
        ADD_FAILURE() << "the entry \"" << title << "\" cannot be chosen";
        return;
    }
    highlight(title);
    // Entries know their menus only while somebody holds the menu at the top.
    auto const root = levels_.front().menu;
    levels_.clear();
    if (auto const action = entry->action)
        events_.during(Event { EventType::leftMouseUp, events_.held }, [&] { action(*entry); });
}

void FakeMenuPresenter::open(std::shared_ptr<Menu> menu)
{
    menu->menuNeedsUpdate(*menu);
    levels_.push_back({ std::move(menu), {} });
}

}
