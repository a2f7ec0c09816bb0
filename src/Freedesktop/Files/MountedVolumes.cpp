#include "Freedesktop/Files/MountedVolumes.h"

#include "Freedesktop/Files/StandardDirectories.h"

#include <algorithm>
#include <gio/gunixmounts.h>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace marrowick {

namespace {

bool isBelow(std::string_view path, std::string_view folder)
{
    return path.size() > folder.size() + 1 && path.starts_with(folder) && path[folder.size()] == '/';
}

bool hasOption(std::string_view options, std::string_view option)
{
    while (!options.empty()) {
        auto const first = options.substr(0, options.find(','));
        if (first == option)
            return true;
        options.remove_prefix(std::min(first.size() + 1, options.size()));
    }
    return false;
}

bool isInUsersPlace(std::string_view path, VolumeViewer const& viewer)
{
    if (isBelow(path, "/media"))
        return true;
    if (isBelow(path, viewer.isSuperuser ? "/run/media" : "/run/media/" + viewer.userName))
        return true;
    return viewer.home != "/" && isBelow(path, viewer.home);
}

bool isShown(Mount const& mount, VolumeViewer const& viewer)
{
    if (mount.path == "/")
        return true;
    if (hasOption(mount.options, "x-gvfs-hide") || hasOption(mount.options, "comment=gvfs-hide"))
        return false;
    if (hasOption(mount.options, "x-gvfs-show") || hasOption(mount.options, "comment=gvfs-show"))
        return true;
    // File managers hide what lies in a hidden folder, wherever that is.
    if (mount.isSystemInternal || !mount.isReachable || mount.path.find("/.") != std::string::npos)
        return false;
    return isInUsersPlace(mount.path, viewer);
}

/// Whether the folder that holds the mount point may be entered. Asked only where that folder lies on the root's file
/// system: on any other the question itself could be left without an answer.
bool mayEnterParent(std::string const& path, std::vector<Mount> const& mounts)
{
    auto const parent = path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
    bool const isOnAnotherMount = std::any_of(mounts.begin(), mounts.end(),
        [&](Mount const& mount) { return mount.path == parent || isBelow(parent, mount.path); });
    return isOnAnotherMount || ::access(parent.c_str(), X_OK) == 0;
}

}

std::vector<std::string> shownVolumes(std::vector<Mount> const& mounts, VolumeViewer const& viewer)
{
    std::vector<std::string> paths { "/" };
    for (auto const& mount : mounts) {
        // What is mounted later at the same place covers what was there.
        std::erase_if(paths, [&](std::string const& path) { return path == mount.path && path != "/"; });
        if (mount.path != "/" && isShown(mount, viewer))
            paths.push_back(mount.path);
    }
    return paths;
}

std::vector<Mount> currentMounts()
{
    std::vector<Mount> mounts;
    GList* const entries = g_unix_mounts_get(nullptr);
    for (GList* link = entries; link; link = link->next) {
        auto* const entry = static_cast<GUnixMountEntry*>(link->data);
        char const* const options = g_unix_mount_get_options(entry);
        mounts.push_back({ .path = g_unix_mount_get_mount_path(entry),
            .options = options ? options : "",
            .isSystemInternal = g_unix_mount_is_system_internal(entry) != FALSE });
    }
    for (auto& mount : mounts)
        mount.isReachable = mayEnterParent(mount.path, mounts);
    g_list_free_full(entries, [](gpointer entry) { g_unix_mount_free(static_cast<GUnixMountEntry*>(entry)); });
    return mounts;
}

VolumeViewer currentViewer()
{
    return { .home = homePath(), .userName = g_get_user_name(), .isSuperuser = ::geteuid() == 0 };
}

}
