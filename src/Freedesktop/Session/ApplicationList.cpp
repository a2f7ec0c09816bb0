#include "Freedesktop/Session/ApplicationList.h"

#include <algorithm>
#include <unordered_map>

namespace marrowick {

namespace {

std::string asciiLowerCase(std::string text)
{
    for (auto& character : text) {
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    }
    return text;
}

/// The program file of the window's process; empty where it is another machine's or cannot be told.
std::string executableOfWindow(ClientWindow const& window, ApplicationRules const& rules)
{
    return window.pid && window.isLocal ? rules.executableOf(*window.pid) : std::string();
}

/// The installed entry of the window's application, and its name.
struct InstalledApplication {
    DesktopEntry const* entry = nullptr;
    std::string name;
};

InstalledApplication installedApplicationOf(ClientWindow const& window, ApplicationRules const& rules)
{
    auto const& entries = rules.entries;
    InstalledApplication found;
    auto const isInstalled = [&](DesktopEntry const* candidate) {
        auto const name = candidate ? entries.localizedName(*candidate) : std::nullopt;
        if (name)
            found = { candidate, *name };
        return name.has_value();
    };
    // The instance is the more particular half: one program shows the windows of several applications by it.
    if (isInstalled(entries.withStartupWMClass(window.instanceName))
        || isInstalled(entries.withStartupWMClass(window.className))
        || isInstalled(entries.withID(window.gtkApplicationID)) || isInstalled(entries.withID(window.className))
        || isInstalled(entries.withID(asciiLowerCase(window.className)))
        || isInstalled(entries.withID(window.instanceName)))
        return found;
    isInstalled(entries.withExecutable(executableOfWindow(window, rules)));
    return found;
}

ApplicationFacts factsOfOwnWindow(ApplicationRules const& rules)
{
    ApplicationFacts facts;
    facts.isThisProgram = true;
    facts.key = "entry " + rules.ownIdentifier;
    facts.identifier = rules.ownIdentifier;
    facts.name = rules.ownIdentifier.substr(rules.ownIdentifier.rfind('.') + 1);
    auto const* entry = rules.entries.withID(rules.ownIdentifier);
    if (auto const name = entry ? rules.entries.localizedName(*entry) : std::nullopt) {
        facts.name = *name;
        facts.bundleURL = FileURL(entry->path);
    }
    return facts;
}

ApplicationFacts factsOfUnknownWindow(ClientWindow const& window, ApplicationRules const& rules)
{
    ApplicationFacts facts;
    if (!window.className.empty()) {
        facts.key = "class " + window.className;
        facts.identifier = window.className;
        facts.name = window.className;
        return facts;
    }
    facts.key = window.pid ? "process " + std::to_string(*window.pid) : "window " + std::to_string(window.id);
    auto const executable = executableOfWindow(window, rules);
    if (!executable.empty())
        facts.name = FileURL(executable).lastPathComponent();
    return facts;
}

}

bool isOwnWindow(ClientWindow const& window, ApplicationRules const& rules)
{
    auto const isOwnName = [&](std::string const& name) {
        auto const shortName = std::string_view(rules.ownIdentifier).substr(rules.ownIdentifier.rfind('.') + 1);
        return name == rules.ownIdentifier || asciiLowerCase(name) == asciiLowerCase(std::string(shortName));
    };
    return (window.pid == rules.ownPID && window.isLocal) || isOwnName(window.className);
}

ApplicationFacts factsOfWindow(ClientWindow const& window, ApplicationRules const& rules)
{
    ApplicationFacts facts;
    if (isOwnWindow(window, rules)) {
        facts = factsOfOwnWindow(rules);
    } else if (auto const installed = installedApplicationOf(window, rules); installed.entry) {
        facts.key = "entry " + installed.entry->id;
        facts.identifier = installed.entry->id;
        facts.name = installed.name;
        facts.bundleURL = FileURL(installed.entry->path);
    } else {
        facts = factsOfUnknownWindow(window, rules);
    }
    facts.policy = window.skipsTaskbar ? ActivationPolicy::accessory : ActivationPolicy::regular;
    facts.isHidden = window.isMinimised;
    facts.windows = { window };
    return facts;
}

std::vector<ApplicationFacts> applicationsOfWindows(ClientWindows const& windows, ApplicationRules const& rules)
{
    std::vector<ApplicationFacts> applications;
    std::unordered_map<std::string, std::size_t> positions;
    for (auto const& window : windows.windows) {
        auto facts = factsOfWindow(window, rules);
        facts.isActive = window.id == windows.active;
        auto const [known, isNew] = positions.emplace(facts.key, applications.size());
        if (isNew) {
            applications.push_back(std::move(facts));
            continue;
        }
        auto& application = applications[known->second];
        if (facts.policy == ActivationPolicy::regular)
            application.policy = ActivationPolicy::regular;
        application.isHidden = application.isHidden && facts.isHidden;
        application.isActive = application.isActive || facts.isActive;
        application.windows.push_back(window);
    }
    return applications;
}

}
