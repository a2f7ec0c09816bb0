#include "Support/FinderBridge.h"

#include "Platform/Platform.h"
#include "Support/FileURLText.h"

#include <algorithm>
#include <string>
#include <utility>

namespace marrowick {

std::optional<EventDescriptor> FinderBridge::runAppleScript(std::string_view source)
{
    auto outcome = platform().scriptingBridge->execute(source);
    if (auto* descriptor = std::get_if<EventDescriptor>(&outcome))
        return std::move(*descriptor);
    if (auto const& description = std::get<ScriptFailure>(outcome).errorDescription)
        platform().log->write("Marrowick: AppleScript error: " + *description);
    return std::nullopt;
}

std::vector<FileURL> FinderBridge::selectedItems()
{
    auto const result = runAppleScript("tell application \"Finder\" to get (selection as alias list)");
    if (!result)
        return {};
    std::vector<FileURL> urls;
    auto const appendURLOf = [&](EventDescriptor const& descriptor) {
        if (auto url = fileURLValue(descriptor))
            urls.push_back(std::move(*url));
    };
    if (auto const* list = std::get_if<EventDescriptor::List>(&result->value))
        std::for_each(list->begin(), list->end(), appendURLOf);
    else
        appendURLOf(*result);
    return urls;
}

std::optional<FileURL> FinderBridge::frontWindowFolder()
{
    auto const result = runAppleScript("tell application \"Finder\" to get (target of front window as alias)");
    return result ? fileURLValue(*result) : std::nullopt;
}

std::optional<FileURL> FinderBridge::fileURLValue(EventDescriptor const& descriptor)
{
    if (auto const* reference = std::get_if<EventDescriptor::FileReference>(&descriptor.value))
        return fileURLFromText(reference->url);
    if (auto const* path = std::get_if<std::string>(&descriptor.value))
        return FileURL(*path);
    return std::nullopt;
}

std::vector<FileURL> FinderBridge::mountedVolumes()
{
    auto volumes = platform().fileManager->mountedVolumes().value_or(std::vector<FileURL> {});
    std::stable_sort(volumes.begin(), volumes.end(), [](FileURL const& a, FileURL const& b) {
        return platform().collation->compare(a.lastPathComponent(), b.lastPathComponent()) < 0;
    });
    return volumes;
}

}
