#include "Freedesktop/Files/FreedesktopFileTypes.h"

#include "Freedesktop/GLibOwners.h"

#include <string>

namespace marrowick {

std::optional<FileType> FreedesktopFileTypes::type(FileURL const& url) const
{
    if (!url.path().starts_with('/'))
        return std::nullopt;
    GObjectOwner<GFile> const file(g_file_new_for_path(url.path().c_str()));
    GObjectOwner<GFileInfo> const info(g_file_query_info(
        file.get(), G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE, G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS, nullptr, nullptr));
    char const* const identifier
        = info ? g_file_info_get_attribute_string(info.get(), G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE) : nullptr;
    if (!identifier || g_content_type_is_unknown(identifier))
        return std::nullopt;
    FileType type { identifier, std::nullopt };
    // Of a type without a description the library says that it is of that type, in words of its own.
    GStringOwner const description(g_content_type_get_description(identifier));
    if (description && *description && std::string_view(description.get()).find(identifier) == std::string_view::npos)
        type.localizedDescription = description.get();
    return type;
}

bool FreedesktopFileTypes::isText(std::string_view pathExtension) const
{
    if (pathExtension.empty() || pathExtension.find('\0') != std::string_view::npos)
        return false;
    auto const name = "name." + std::string(pathExtension);
    gboolean isUncertain = FALSE;
    GStringOwner const type(g_content_type_guess(name.c_str(), nullptr, 0, &isUncertain));
    return type && !g_content_type_is_unknown(type.get()) && g_content_type_is_a(type.get(), "text/plain");
}

}
