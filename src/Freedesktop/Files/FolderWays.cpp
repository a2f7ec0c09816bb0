#include "Freedesktop/Files/FolderWays.h"

#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Files/KernelTick.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace marrowick {

namespace {

/// As many as the system itself follows.
constexpr int mostLinks = 40;

bool isAtOrBelow(std::string_view path, std::string_view folder)
{
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::optional<std::string> targetOfLink(std::string const& path)
{
    char target[PATH_MAX];
    auto const size = ::readlink(path.c_str(), target, sizeof target);
    if (size <= 0)
        return std::nullopt;
    return std::string(target, static_cast<std::size_t>(size));
}

/// Whether the steps of the absolute `path` are the places that its text names, as the system sees it in one call, and none
/// of these is in `volumes`. When it is true there is no such volume on the way, even if that ends too early.
bool isPlainWay(std::string const& path, VolumePaths const& volumes)
{
    if (path.find("//") != std::string::npos || path.find("/..") != std::string::npos)
        return false;
    if (path.find("/./") != std::string::npos || path.ends_with("/.") || path.size() >= PATH_MAX)
        return false;
    auto const isOnTheWay = [&](std::string const& volume) { return isAtOrBelow(path, volume); };
    if (std::any_of(volumes.begin(), volumes.end(), isOnTheWay))
        return false;
    open_how how {};
    how.flags = static_cast<std::uint64_t>(O_PATH | O_CLOEXEC);
    how.resolve = RESOLVE_NO_SYMLINKS;
    FileDescriptor const item(static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, path.c_str(), &how, sizeof how)));
    return item.isOpen() || errno == ENOENT || errno == ENOTDIR || errno == EACCES;
}

/// Goes along a path step by step, and looks at each place before it is touched.
class Walk {
public:
    /// From `place`, an absolute path without links, or empty for the root; stops before the first of `volumes`.
    Walk(std::string place, VolumePaths const& volumes)
        : place_(std::move(place))
        , volumes_(volumes)
    {
    }

    /// The volume before which it stopped. Where it can be told that the way ends earlier, what is left is taken as it
    /// stands.
    std::optional<std::string> follow(std::string way)
    {
        int links = 0;
        if (way.starts_with('/'))
            place_.clear();
        for (std::size_t position = 0; (position = way.find_first_not_of('/', position)) < way.size();) {
            auto const end = std::min(way.find('/', position), way.size());
            auto const step = std::string_view(way).substr(position, end - position);
            position = end;
            if (step == ".")
                continue;
            if (step == "..") {
                place_.resize(std::min(place_.rfind('/'), place_.size()));
                continue;
            }
            auto next = place_ + '/';
            next += step;
            if (std::find(volumes_.begin(), volumes_.end(), next) != volumes_.end())
                return deepestVolume(next + way.substr(position));
            auto const target = targetOfLink(next);
            if (!target) {
                place_ = std::move(next);
                continue;
            }
            if (++links > mostLinks)
                return std::nullopt;
            if (target->starts_with('/'))
                place_.clear();
            way = *target + way.substr(position);
            position = 0;
        }
        return std::nullopt;
    }

    std::string takePlace() { return std::move(place_); }

private:
    /// So that one server that is silent does not stand for all of those that a folder of servers holds.
    std::string deepestVolume(std::string const& path) const
    {
        std::string_view deepest;
        for (auto const& volume : volumes_) {
            if (volume.size() > deepest.size() && isAtOrBelow(path, volume))
                deepest = volume;
        }
        return std::string(deepest);
    }

    std::string place_;
    VolumePaths const& volumes_;
};

std::string absolutePath(std::string_view path)
{
    std::string absolute;
    if (!path.starts_with('/')) {
        char current[PATH_MAX];
        if (::getcwd(current, sizeof current))
            absolute = current;
        absolute += '/';
    }
    return absolute.append(path);
}

/// The place of a folder without the links on the way to it.
std::string placeOf(std::string folder, VolumePaths const& volumes)
{
    folder.resize(folder.find_last_not_of('/') + 1);
    if (isPlainWay(folder, volumes))
        return folder;
    VolumePaths const none;
    Walk walk({}, none);
    walk.follow(std::move(folder));
    return walk.takePlace();
}

}

FolderWays::FolderWays(std::string place, std::shared_ptr<VolumePaths const> volumes)
    : place_(place == "/" ? std::string() : std::move(place))
    , volumes_(std::move(volumes))
{
    if (!volumes_)
        return;
    for (auto const& volume : *volumes_) {
        if (isAtOrBelow(place_, volume))
            continue;
        holdsVolume_ = holdsVolume_ || (volume.rfind('/') == place_.size() && volume.starts_with(place_));
        strange_.push_back(volume);
    }
}

FolderWays FolderWays::of(int directory)
{
    auto volumes = currentDoubtfulVolumes();
    if (!volumes)
        return {};
    auto place = targetOfLink("/proc/self/fd/" + std::to_string(directory));
    return place && place->starts_with('/') ? FolderWays(std::move(*place), std::move(volumes)) : FolderWays();
}

std::shared_ptr<FolderWays const> FolderWays::around(std::string const& path)
{
    struct Known {
        std::string folder;
        std::shared_ptr<VolumePaths const> volumes;
        std::shared_ptr<FolderWays const> ways;
        KernelTick tick;
    };
    thread_local Known known;

    auto volumes = currentDoubtfulVolumes();
    if (!volumes)
        return nullptr;
    auto const folder = std::string_view(path).substr(0, path.rfind('/') + 1);
    bool const isFresh = !known.tick.hasCome() && known.volumes == volumes;
    if (!isFresh || known.folder != folder) {
        known.ways = std::make_shared<FolderWays const>(placeOf(absolutePath(folder), *volumes), volumes);
        known.folder = folder;
        known.volumes = std::move(volumes);
    }
    return known.ways;
}

FolderWays FolderWays::below(std::string_view name) const
{
    return areHarmless() ? FolderWays() : FolderWays(pathOf(name), volumes_);
}

std::string FolderWays::pathOf(std::string_view name) const
{
    auto path = place_ + '/';
    path += name;
    return path;
}

std::optional<std::string> FolderWays::volumeAt(std::string_view name) const
{
    if (!holdsVolume_)
        return std::nullopt;
    auto path = pathOf(name);
    if (std::find(strange_.begin(), strange_.end(), path) == strange_.end())
        return std::nullopt;
    return path;
}

std::optional<std::string> FolderWays::volumeBehind(std::string_view name) const
{
    if (areHarmless())
        return std::nullopt;
    if (auto volume = volumeAt(name))
        return volume;
    auto const target = targetOfLink(pathOf(name));
    if (!target)
        return std::nullopt;
    if (isPlainWay(target->starts_with('/') ? *target : pathOf(*target), strange_))
        return std::nullopt;
    return Walk(place_, strange_).follow(*target);
}

std::optional<std::string> volumeEntered(std::string const& path)
{
    auto const ways = FolderWays::around(path);
    return ways ? ways->volumeBehind(std::string_view(path).substr(path.rfind('/') + 1)) : std::nullopt;
}

std::optional<std::string> volumeOnTheWay(std::string const& path)
{
    auto const volumes = currentDoubtfulVolumes();
    if (!volumes)
        return std::nullopt;
    auto const whole = absolutePath(path);
    return isPlainWay(whole, *volumes) ? std::nullopt : Walk({}, *volumes).follow(whole);
}

}
