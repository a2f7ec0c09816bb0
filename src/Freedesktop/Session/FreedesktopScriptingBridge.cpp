#include "Freedesktop/Session/FreedesktopScriptingBridge.h"

#include "Freedesktop/Session/ExportedWindows.h"
#include "Freedesktop/Session/FinderScripts.h"

#include <algorithm>
#include <utility>

namespace marrowick {

namespace {

// The numbers that scripts know these errors by.
constexpr int applicationNotRunning = -600;
constexpr int eventNotHandled = -1708;

template<typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};

// Clang before 17 does not find it by itself.
template<typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

bool isFileURI(std::string_view uri)
{
    return uri.starts_with("file:");
}

EventDescriptor selectionOf(FileManagerWindow const* window)
{
    EventDescriptor::List selection;
    if (!window || !window->selectedURIs)
        return { std::move(selection) };
    GVariantIter iterator;
    g_variant_iter_init(&iterator, window->selectedURIs.get());
    char const* uri = nullptr;
    while (g_variant_iter_next(&iterator, "&s", &uri)) {
        // What is not on the disk has no path to work with.
        if (isFileURI(uri))
            selection.push_back({ EventDescriptor::FileReference { uri } });
    }
    return { std::move(selection) };
}

EventDescriptor targetOf(FileManagerWindow const* window)
{
    if (!window || !isFileURI(window->folderURI))
        return {};
    return { EventDescriptor::FileReference { window->folderURI } };
}

}

FreedesktopScriptingBridge::FreedesktopScriptingBridge(std::shared_ptr<XConnection> connection)
    : connection_(std::move(connection))
    , launcher_(connection_)
{
}

template<typename Describe>
FreedesktopScriptingBridge::Answer FreedesktopScriptingBridge::askFrontWindow(Describe describe)
{
    auto answer = fileManagerStates_.ask();
    if (auto* const failure = std::get_if<ScriptFailure>(&answer))
        return std::move(*failure);
    auto& windows = std::get<FileManagerWindows>(answer);
    if (std::any_of(windows.begin(), windows.end(), [](auto const& window) { return window.exported.has_value(); }))
        identifyExportedWindows(windows, readNamedWindows(*connection_));
    // One window is in front wherever it lies.
    auto const stacking = windows.size() > 1 ? readStacking(*connection_, windows) : std::vector<StackedWindow> {};
    return describe(frontWindow(windows, stacking));
}

FreedesktopScriptingBridge::Answer FreedesktopScriptingBridge::openInformationWindow(FileURL const& url)
{
    if (!SessionBus::isAvailable())
        return ScriptFailure { errorDictionary(
            "Finder got an error: there is no session bus to reach a file manager by.", applicationNotRunning) };
    fileManager_.showItemProperties(url, launcher_.makeStartupID());
    return EventDescriptor {};
}

std::variant<EventDescriptor, ScriptFailure> FreedesktopScriptingBridge::execute(std::string_view source)
{
    return std::visit(
        Overloaded {
            [this](finderScript::Selection) { return askFrontWindow(selectionOf); },
            [this](finderScript::FrontWindowTarget) { return askFrontWindow(targetOf); },
            [this](finderScript::OpenInformationWindow const& script) { return openInformationWindow(script.url); },
            [](finderScript::NotUnderstood) -> Answer {
                return ScriptFailure { errorDictionary(
                    "Finder got an error: the script is not understood.", eventNotHandled) };
            },
        },
        parseFinderScript(source));
}

}
