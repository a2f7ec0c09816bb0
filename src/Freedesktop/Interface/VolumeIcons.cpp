#include "Freedesktop/Interface/VolumeIcons.h"

#include "Freedesktop/Files/MountChanges.h"

#include <gio/gunixmounts.h>

#include <unordered_map>

namespace marrowick {

namespace {

/// The icons of all volumes, by their roots.
class MountedIcons {
public:
    GIcon* at(std::string const& path)
    {
        if (bool const haveChanged = changes_.haveCome(); haveChanged || !isRead_)
            read();
        auto const found = icons_.find(path);
        return found == icons_.end() ? nullptr : found->second.get();
    }

private:
    void read()
    {
        icons_.clear();
        GList* const entries = g_unix_mounts_get(nullptr);
        for (GList* link = entries; link; link = link->next) {
            auto* const entry = static_cast<GUnixMountEntry*>(link->data);
            icons_.insert_or_assign(
                g_unix_mount_get_mount_path(entry), GObjectOwner<GIcon>(g_unix_mount_guess_icon(entry)));
        }
        g_list_free_full(entries, [](gpointer entry) { g_unix_mount_free(static_cast<GUnixMountEntry*>(entry)); });
        isRead_ = true;
    }

    MountChanges changes_;
    bool isRead_ = false;
    std::unordered_map<std::string, GObjectOwner<GIcon>> icons_;
};

}

GObjectOwner<GIcon> volumeIcon(std::string const& path)
{
    static MountedIcons icons;
    auto* const icon = icons.at(path);
    return GObjectOwner<GIcon>(icon ? G_ICON(g_object_ref(icon)) : nullptr);
}

}
