#include "Freedesktop/Session/DesktopEntries.h"

#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Session/ExecLine.h"

#include <dirent.h>
#include <fcntl.h>
#include <gio/gdesktopappinfo.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <unordered_set>

namespace marrowick {

namespace {

constexpr std::string_view entrySuffix = ".desktop";
constexpr std::size_t maximumEntryBytes = 1024 * 1024;
constexpr std::size_t maximumEntries = 20'000;
constexpr int maximumDepth = 8;

/// The clock that marks files moves in steps; two changes within one step look the same.
constexpr std::int64_t clockStepNanoseconds = 20'000'000;

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

std::int64_t nanoseconds(timespec const& time)
{
    return std::int64_t { time.tv_sec } * 1'000'000'000 + time.tv_nsec;
}

bool isSame(struct stat const& a, struct stat const& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size
        && nanoseconds(a.st_mtim) == nanoseconds(b.st_mtim) && nanoseconds(a.st_ctim) == nanoseconds(b.st_ctim);
}

/// The content of a regular file; empty where it is none, cannot be read, or is too large.
std::string contentOf(std::string const& path)
{
    int const file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return {};
    std::string content;
    struct stat status { };
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)
        && static_cast<std::size_t>(status.st_size) <= maximumEntryBytes) {
        content.resize(static_cast<std::size_t>(status.st_size));
        auto const length = ::read(file, content.data(), content.size());
        content.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    }
    close(file);
    return content;
}

std::string_view trimmed(std::string_view text)
{
    auto const isBlank = [](char character) { return character == ' ' || character == '\t' || character == '\r'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// The keys of a desktop entry's own group that matter for finding it, without the cost of reading all translations.
struct EntryKeys {
    std::string_view type;
    std::string_view startupWMClass;
    std::string_view exec;
    std::string_view categories;
    bool noDisplay = false;
    bool isDeleted = false;
};

void readKey(EntryKeys& keys, std::string_view key, std::string_view value)
{
    if (key == "Type")
        keys.type = value;
    else if (key == "StartupWMClass")
        keys.startupWMClass = value;
    else if (key == "Exec")
        keys.exec = value;
    else if (key == "Categories")
        keys.categories = value;
    else if (key == "NoDisplay")
        keys.noDisplay = value == "true";
    else if (key == "Hidden")
        keys.isDeleted = value == "true";
}

EntryKeys keysOf(std::string_view content)
{
    EntryKeys keys;
    bool isInGroup = false;
    while (!content.empty()) {
        auto const end = content.find('\n');
        auto const line = trimmed(content.substr(0, end));
        content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
        if (line.empty() || line.front() == '#')
            continue;
        if (line.front() == '[') {
            isInGroup = line == "[Desktop Entry]";
            continue;
        }
        auto const equals = line.find('=');
        if (isInGroup && equals != std::string_view::npos)
            readKey(keys, trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
    return keys;
}

std::string realPath(std::string const& path)
{
    std::unique_ptr<char, decltype(&std::free)> const resolved(realpath(path.c_str(), nullptr), &std::free);
    return resolved ? std::string(resolved.get()) : std::string();
}

bool liesIn(std::string_view path, std::string_view folder)
{
    return !folder.empty() && path.size() > folder.size() && path.substr(0, folder.size()) == folder
        && path[folder.size()] == '/';
}

std::vector<std::string> programFolders()
{
    std::vector<std::string> folders;
    char const* const path = g_getenv("PATH");
    std::string_view rest = path ? path : "";
    while (!rest.empty()) {
        auto const folder = rest.substr(0, rest.find(':'));
        if (folder.starts_with('/'))
            folders.emplace_back(folder);
        rest.remove_prefix(std::min(rest.size(), folder.size() + 1));
    }
    return folders;
}

}

std::vector<std::string> applicationsFolders()
{
    std::vector<std::string> folders;
    auto const add = [&](std::string data) {
        while (data.size() > 1 && data.back() == '/')
            data.pop_back();
        auto folder = data + "/applications";
        if (data.front() == '/' && std::find(folders.begin(), folders.end(), folder) == folders.end())
            folders.push_back(std::move(folder));
    };
    add(g_get_user_data_dir());
    for (auto directory = g_get_system_data_dirs(); *directory; ++directory) {
        if (**directory)
            add(*directory);
    }
    // Where applications come in packages of their own, their entries are here; not every session names these folders.
    add(std::string(g_get_user_data_dir()) + "/flatpak/exports/share");
    add("/var/lib/flatpak/exports/share");
    add("/var/lib/snapd/desktop");
    return folders;
}

bool liesInApplicationsFolder(std::string const& path, std::vector<std::string> const& folders)
{
    auto const slash = path.rfind('/');
    if (slash == std::string::npos)
        return false;
    auto const resolved = realPath(path);
    auto const inItsFolder = realPath(path.substr(0, slash + 1)) + path.substr(slash);
    return std::any_of(folders.begin(), folders.end(), [&](std::string const& folder) {
        auto const resolvedFolder = realPath(folder);
        return liesIn(resolved, resolvedFolder) || liesIn(inItsFolder, resolvedFolder);
    });
}

DesktopEntries::DesktopEntries(std::vector<std::string> folders)
    : folders_(std::move(folders))
{
}

void DesktopEntries::refresh()
{
    if (!stampsAreTrusted_ || !isUnchanged())
        read();
}

DesktopEntries::Stamp DesktopEntries::stampOf(std::string path)
{
    Stamp stamp;
    stamp.path = std::move(path);
    stamp.exists = stat(stamp.path.c_str(), &stamp.status) == 0;
    return stamp;
}

bool DesktopEntries::isUnchanged() const
{
    return std::all_of(stamps_.begin(), stamps_.end(), [](Stamp const& known) {
        struct stat status { };
        bool const exists = stat(known.path.c_str(), &status) == 0;
        return exists == known.exists && (!exists || isSame(known.status, status));
    });
}

void DesktopEntries::read()
{
    timespec start {};
    clock_gettime(CLOCK_REALTIME, &start);
    stamps_.clear();
    entries_.clear();
    names_.clear();
    byID_.clear();
    for (auto const& folder : folders_)
        readFolder(folder, {}, 0);
    buildIndexes();
    // Whether an entry counts depends on its program too, which may come and go by itself.
    for (auto& folder : programFolders())
        stamps_.push_back(stampOf(std::move(folder)));
    ++generation_;

    auto const oldEnough = nanoseconds(start) - clockStepNanoseconds;
    stampsAreTrusted_ = std::all_of(stamps_.begin(), stamps_.end(),
        [&](Stamp const& stamp) { return !stamp.exists || nanoseconds(stamp.status.st_ctim) < oldEnough; });
}

void DesktopEntries::readFolder(std::string const& path, std::string const& idPrefix, int depth)
{
    auto const stamp = stampOf(path);
    // A folder that is reached twice, as by a link to one above it, has nothing more to tell.
    bool const isKnown = stamp.exists && std::any_of(stamps_.begin(), stamps_.end(), [&](Stamp const& known) {
        return known.exists && known.status.st_ino == stamp.status.st_ino && known.status.st_dev == stamp.status.st_dev;
    });
    stamps_.push_back(stamp);
    if (!stamp.exists || isKnown || depth > maximumDepth)
        return;
    std::unique_ptr<DIR, CloseDirectory> const directory(opendir(path.c_str()));
    if (!directory)
        return;
    while (auto const item = readdir(directory.get())) {
        std::string const name = item->d_name;
        if (name == "." || name == ".." || entries_.size() >= maximumEntries)
            continue;
        auto const itemPath = path + "/" + name;
        if (std::string_view(name).ends_with(entrySuffix)) {
            readEntry(itemPath, idPrefix + name.substr(0, name.size() - entrySuffix.size()));
        } else if (item->d_type == DT_DIR || item->d_type == DT_LNK || item->d_type == DT_UNKNOWN) {
            struct stat status { };
            if (stat(itemPath.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
                readFolder(itemPath, idPrefix + name + "-", depth + 1);
        }
    }
}

void DesktopEntries::readEntry(std::string const& path, std::string id)
{
    stamps_.push_back(stampOf(path));
    // The first folder that has an ID hides the others, also where it only says that there is no such application.
    if (!byID_.emplace(id, entries_.size()).second)
        return;
    auto const content = contentOf(path);
    auto const keys = keysOf(content);
    DesktopEntry entry;
    entry.id = std::move(id);
    if (keys.type == "Application" && !keys.isDeleted) {
        entry.path = path;
        entry.startupWMClass = keys.startupWMClass;
        entry.commandLine = keys.exec;
        entry.categories = keys.categories;
        entry.isVisible = !keys.noDisplay;
    }
    entries_.push_back(std::move(entry));
}

void DesktopEntries::buildIndexes()
{
    byWMClass_.clear();
    byExecutable_.clear();
    std::unordered_set<std::string> ambiguous;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        auto const& entry = entries_[i];
        if (entry.path.empty())
            continue;
        if (!entry.startupWMClass.empty()) {
            auto const [known, isNew] = byWMClass_.emplace(entry.startupWMClass, i);
            if (!isNew && entry.isVisible && !entries_[known->second].isVisible)
                known->second = i;
        }
        auto const program = entry.isVisible ? soleProgramOfExecLine(entry.commandLine) : std::string();
        if (!program.empty() && !byExecutable_.emplace(program, i).second)
            ambiguous.insert(program);
    }
    for (auto const& program : ambiguous)
        byExecutable_.erase(program);
}

DesktopEntry const* DesktopEntries::find(Index const& index, std::string_view key) const
{
    auto const found = key.empty() ? index.end() : index.find(std::string(key));
    if (found == index.end() || entries_[found->second].path.empty())
        return nullptr;
    return &entries_[found->second];
}

DesktopEntry const* DesktopEntries::withStartupWMClass(std::string_view wmClass) const
{
    return find(byWMClass_, wmClass);
}

DesktopEntry const* DesktopEntries::withID(std::string_view id) const
{
    return find(byID_, id);
}

DesktopEntry const* DesktopEntries::withExecutable(std::string_view path) const
{
    auto const slash = path.rfind('/');
    return find(byExecutable_, slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::optional<std::string> DesktopEntries::localizedName(DesktopEntry const& entry) const
{
    auto const [known, isNew] = names_.try_emplace(entry.path);
    if (isNew) {
        if (GObjectOwner<GDesktopAppInfo> const info { g_desktop_app_info_new_from_filename(entry.path.c_str()) })
            known->second = g_app_info_get_name(G_APP_INFO(info.get()));
    }
    return known->second;
}

}
