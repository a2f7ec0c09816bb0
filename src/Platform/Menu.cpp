#include "Platform/Menu.h"

#include <utility>

namespace marrowick {

std::shared_ptr<MenuItem> MenuItem::make(std::string title, MenuAction action, std::string keyEquivalent)
{
    std::shared_ptr<MenuItem> item(new MenuItem);
    item->title = std::move(title);
    item->action = std::move(action);
    item->keyEquivalent = std::move(keyEquivalent);
    return item;
}

std::shared_ptr<MenuItem> MenuItem::makeSeparator()
{
    std::shared_ptr<MenuItem> item(new MenuItem);
    item->isSeparator_ = true;
    return item;
}

Menu::Menu(std::string title)
    : title(std::move(title))
{
}

void Menu::addItem(std::shared_ptr<MenuItem> item)
{
    item->menu_ = weak_from_this();
    items_.push_back(std::move(item));
}

void Menu::removeAllItems()
{
    for (auto const& item : items_)
        item->menu_.reset();
    items_.clear();
}

void Menu::menuNeedsUpdate(Menu&) { }

void Menu::willHighlight(Menu&, std::shared_ptr<MenuItem> const&) { }

bool Menu::performKeyEquivalent(KeyEvent const&, std::function<bool()> const& platformsOwn)
{
    return platformsOwn();
}

}
