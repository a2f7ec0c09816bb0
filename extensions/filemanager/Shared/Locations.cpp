#include "Shared/Locations.h"

#include "Shared/GLib.h"

#include <gio/gio.h>

#include <string_view>
#include <utility>

namespace marrowick::companion {

namespace {

using FileOwner = ObjectOwner<GFile>;

}

std::string folderURI(std::string uri)
{
    constexpr std::string_view ofTheDesktop = "x-caja-desktop:";
    bool const isDesktop = uri.starts_with(ofTheDesktop) && uri.find_first_not_of('/', ofTheDesktop.size()) == uri.npos;
    if (!isDesktop)
        return uri;
    char const* const desktop = g_get_user_special_dir(G_USER_DIRECTORY_DESKTOP);
    if (!desktop)
        return uri;
    FileOwner const folder(g_file_new_for_path(desktop));
    return taken(g_file_get_uri(folder.get()));
}

std::optional<std::string> requestablePath(std::string const& uri)
{
    FileOwner const file(g_file_new_for_uri(uri.c_str()));
    if (!g_file_is_native(file.get()))
        return std::nullopt;
    auto path = taken(g_file_get_path(file.get()));
    bool const isText = g_utf8_validate(path.data(), static_cast<gssize>(path.size()), nullptr);
    return !path.empty() && isText ? std::optional(std::move(path)) : std::nullopt;
}

std::vector<std::string> requestablePaths(std::vector<std::string> const& uris)
{
    std::vector<std::string> paths;
    for (auto const& uri : uris) {
        if (auto path = requestablePath(uri))
            paths.push_back(std::move(*path));
    }
    return paths;
}

}
