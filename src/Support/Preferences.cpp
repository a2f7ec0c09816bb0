#include "Support/Preferences.h"

#include "Platform/Platform.h"
#include "Platform/SharedObjects.h"

namespace marrowick {

Preferences& Preferences::shared()
{
    return sharedObject<Preferences>();
}

Preferences::Preferences()
    : defaults_(*platform().defaultsStore)
{
}

bool Preferences::inlineItemsIntoMainMenu() const
{
    return boolean("inlineItemsIntoMainMenu", true);
}

bool Preferences::addDesktopSubmenu() const
{
    return boolean("addDesktopSubmenu", true);
}

bool Preferences::addProcessesSubmenu() const
{
    return boolean("addProcessesSubmenu", true);
}

bool Preferences::addPrefPanesSubmenu() const
{
    return boolean("addPrefPanesSubmenu", false);
}

bool Preferences::addRecentItemsSubmenu() const
{
    return boolean("addRecentItemsSubmenu", true);
}

bool Preferences::useFinderLabelColors() const
{
    return boolean("useFinderLabelColors", true);
}

bool Preferences::runScriptFiles() const
{
    return boolean("runScriptFiles", true);
}

bool Preferences::tossDotAppExtension() const
{
    return boolean("tossDotAppExtension", true);
}

bool Preferences::tossDotScptExtension() const
{
    return boolean("tossDotScptExtension", false);
}

bool Preferences::ignoreEmptyItemsFolder() const
{
    return boolean("ignoreEmptyItemsFolder", false);
}

bool Preferences::sortProcessMenu() const
{
    return boolean("sortProcessMenu", true);
}

bool Preferences::addMarrowickToProcessMenu() const
{
    return boolean("addMarrowickToProcessMenu", true);
}

bool Preferences::immedActionOnKeyPress() const
{
    return boolean("immedActionOnKeyPress", true);
}

SortMode Preferences::sortMode() const
{
    auto const stored = string("sortMode").value_or("");
    if (stored == "kindThenAlphabetical")
        return SortMode::kindThenAlphabetical;
    if (stored == "dateModified")
        return SortMode::dateModified;
    return SortMode::alphabetical;
}

FileURL Preferences::itemsFolderURL() const
{
    if (auto path = string("itemsFolderPath"))
        return FileURL(std::move(*path), true);
    return defaultItemsFolderURL();
}

FileURL const& Preferences::defaultItemsFolderURL()
{
    auto& folder = shared().defaultItemsFolder_;
    if (!folder) {
        auto const support = platform().fileManager->urls(StandardDirectory::applicationSupport);
        if (support.empty())
            fatalError("Marrowick: the user has no application support folder");
        folder
            = support.front().appendingPathComponent("Marrowick", true).appendingPathComponent("Marrowick Items", true);
    }
    return *folder;
}

void Preferences::ensureItemsFolderExists() const
{
    auto const folder = itemsFolderURL();
    auto const& fileManager = *platform().fileManager;
    if (!fileManager.fileExists(folder))
        static_cast<void>(fileManager.createDirectory(folder));
}

bool Preferences::boolean(std::string_view key, bool whenAbsent) const
{
    auto const stored = defaults_.object(key);
    if (!stored)
        return whenAbsent;
    if (auto const* flag = std::get_if<bool>(&*stored))
        return *flag;
    if (auto const* number = std::get_if<double>(&*stored))
        return *number != 0;
    return whenAbsent;
}

std::optional<std::string> Preferences::string(std::string_view key) const
{
    auto stored = defaults_.object(key);
    if (stored) {
        if (auto* text = std::get_if<std::string>(&*stored))
            return std::move(*text);
    }
    return std::nullopt;
}

}
