#include "Support/FinderBridge.h"

#include "Platform/Platform.h"
#include "Support/FileURLText.h"

#include <algorithm>
#include <string>
#include <utility>

namespace marrowick {

namespace {

std::vector<FileURL> sortedByName(std::vector<FileURL> urls)
{
    std::stable_sort(urls.begin(), urls.end(), [](FileURL const& a, FileURL const& b) {
        return platform().collation->compare(a.lastPathComponent(), b.lastPathComponent()) < 0;
    });
    return urls;
}

}

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
    return sortedByName(platform().fileManager->mountedVolumes().value_or(std::vector<FileURL> {}));
}

std::vector<FileURL> FinderBridge::installedPreferencePanes()
{
    auto const& fileManager = *platform().fileManager;
    std::vector<FileURL> panes;
    for (auto const& folder : { FileURL("/Library/PreferencePanes", true),
             fileManager.homeDirectory().appendingPathComponent("Library/PreferencePanes", true) }) {
        auto listing = fileManager.contentsOfDirectory(folder, {}, HiddenItems::included);
        if (!listing)
            continue;
        for (auto& item : listing.value()) {
            if (item.url.pathExtension() == "prefPane")
                panes.push_back(std::move(item.url));
        }
    }
    return sortedByName(std::move(panes));
}

void FinderBridge::openInformationWindow(FileURL const& url)
{
    std::string escaped;
    for (char const byte : url.path()) {
        if (byte == '\\' || byte == '"')
            escaped += '\\';
        escaped += byte;
    }
    runAppleScript(
        "tell application \"Finder\" to open information window of (POSIX file \"" + escaped + "\" as alias)");
}

void FinderBridge::moveToTrash(FileURL const& url, std::function<void(bool)> completion)
{
    platform().workspace->recycle({ url }, [completion = std::move(completion)](std::optional<Error> const& error) {
        if (completion)
            completion(!error);
    });
}

}
