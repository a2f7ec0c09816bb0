#include "Freedesktop/Session/BackgroundApplications.h"

#include <dirent.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace marrowick {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

/// The numbers of all processes of the system.
std::vector<pid_t> allProcesses()
{
    std::vector<pid_t> processes;
    std::unique_ptr<DIR, CloseDirectory> const directory(opendir("/proc"));
    while (auto const* item = directory ? readdir(directory.get()) : nullptr) {
        std::string_view const name = item->d_name;
        pid_t pid = 0;
        auto const [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
        if (error == std::errc() && end == name.data() + name.size())
            processes.push_back(pid);
    }
    return processes;
}

struct BackgroundApplication {
    ApplicationFacts facts;
    std::uint64_t startTime = 0;
};

}

std::vector<ApplicationFacts> applicationsWithoutWindows(
    std::vector<ApplicationFacts> const& applications, ApplicationRules const& rules)
{
    std::vector<BackgroundApplication> found;
    std::unordered_map<std::string, std::size_t> positions;
    for (auto const pid : allProcesses()) {
        auto const* const entry = pid == rules.ownPID ? nullptr : rules.entries.withExecutable(rules.executableOf(pid));
        if (!entry || entry->id == rules.ownIdentifier)
            continue;
        auto const key = "entry " + entry->id;
        bool const hasWindows = std::any_of(applications.begin(), applications.end(),
            [&](ApplicationFacts const& application) { return application.key == key; });
        auto const process = hasWindows ? std::nullopt : identityOfProcess(pid);
        auto const name = process ? rules.entries.localizedName(*entry) : std::nullopt;
        if (!name)
            continue;
        auto const [known, isNew] = positions.emplace(key, found.size());
        if (isNew) {
            ApplicationFacts facts;
            facts.key = key;
            facts.identifier = entry->id;
            facts.name = *name;
            facts.bundleURL = FileURL(entry->path);
            facts.policy = ActivationPolicy::prohibited;
            found.push_back({ std::move(facts), process->latestStart });
        }
        auto& application = found[known->second];
        application.facts.processes.push_back(*process);
        application.startTime = std::min(application.startTime, process->latestStart);
    }
    std::stable_sort(found.begin(), found.end(),
        [](BackgroundApplication const& a, BackgroundApplication const& b) { return a.startTime < b.startTime; });
    std::vector<ApplicationFacts> result;
    std::transform(found.begin(), found.end(), std::back_inserter(result),
        [](BackgroundApplication& application) { return std::move(application.facts); });
    return result;
}

}
