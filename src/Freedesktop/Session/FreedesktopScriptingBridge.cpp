#include "Freedesktop/Session/FreedesktopScriptingBridge.h"

#include "Freedesktop/Session/FinderScripts.h"

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

}

FreedesktopScriptingBridge::FreedesktopScriptingBridge(std::shared_ptr<XConnection> connection)
    : launcher_(std::move(connection))
{
}

std::variant<EventDescriptor, ScriptFailure> FreedesktopScriptingBridge::execute(std::string_view source)
{
    using Answer = std::variant<EventDescriptor, ScriptFailure>;
    auto const openInformationWindow = [this](finderScript::OpenInformationWindow const& script) -> Answer {
        if (!SessionBus::isAvailable())
            return ScriptFailure { errorDictionary(
                "Finder got an error: there is no session bus to reach a file manager by.", applicationNotRunning) };
        fileManager_.showItemProperties(script.url, launcher_.makeStartupID());
        return EventDescriptor {};
    };
    return std::visit(
        Overloaded {
            [](finderScript::Selection) -> Answer { return EventDescriptor { EventDescriptor::List {} }; },
            [](finderScript::FrontWindowTarget) -> Answer { return EventDescriptor {}; },
            openInformationWindow,
            [](finderScript::NotUnderstood) -> Answer {
                return ScriptFailure { errorDictionary(
                    "Finder got an error: the script is not understood.", eventNotHandled) };
            },
        },
        parseFinderScript(source));
}

}
