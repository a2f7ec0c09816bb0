#include "Freedesktop/Interface/FileIcons.h"

#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/Pictures.h"
#include "Freedesktop/Interface/VolumeIcons.h"

#include <QHash>
#include <QStringList>

#include <gio/gio.h>

#include <optional>

namespace marrowick {

namespace {

constexpr qsizetype largestDesktopEntry = 1024 * 1024;
constexpr qsizetype mostRememberedNames = 512;

bool hasExtension(FileURL const& url, char const* extension)
{
    return exactText(url.pathExtension()).compare(QLatin1String(extension), Qt::CaseInsensitive) == 0;
}

/// The first of `names` that the icon theme has. Files of one type share the answer.
QIcon themedIcon(QStringList const& names)
{
    static QHash<QString, QIcon> remembered;
    static QString rememberedTheme;
    if (rememberedTheme != QIcon::themeName() || remembered.size() > mostRememberedNames) {
        remembered.clear();
        rememberedTheme = QIcon::themeName();
    }

    QString const key = names.join(QLatin1Char('\n'));
    if (auto const found = remembered.constFind(key); found != remembered.constEnd())
        return *found;
    QIcon icon;
    for (auto const& name : names) {
        if (name.isEmpty() || name.contains(QLatin1Char('/')))
            continue;
        icon = QIcon::fromTheme(name);
        if (!icon.isNull())
            break;
    }
    remembered.insert(key, icon);
    return icon;
}

QIcon iconOf(GIcon* icon)
{
    if (!icon)
        return {};
    if (G_IS_THEMED_ICON(icon)) {
        QStringList names;
        for (auto const* name = g_themed_icon_get_names(G_THEMED_ICON(icon)); name && *name; ++name)
            names.append(exactText(*name));
        return themedIcon(names);
    }
    if (G_IS_FILE_ICON(icon)) {
        GStringOwner const path(g_file_get_path(g_file_icon_get_file(G_FILE_ICON(icon))));
        return path ? pictureIcon(path.get()) : QIcon();
    }
    if (G_IS_EMBLEMED_ICON(icon))
        return iconOf(g_emblemed_icon_get_icon(G_EMBLEMED_ICON(icon)));
    return {};
}

QString withoutPictureExtension(QString const& name)
{
    for (auto const* extension : { ".png", ".svg", ".xpm" }) {
        if (name.endsWith(QLatin1String(extension), Qt::CaseInsensitive))
            return name.chopped(4);
    }
    return name;
}

/// The value of `Icon` in the desktop entry at `path`.
std::optional<std::string> iconNamedByDesktopEntry(QByteArray const& path)
{
    auto const content = readRegularFile(path.constData(), largestDesktopEntry);
    if (!content)
        return std::nullopt;
    GKeyFileOwner const entry(g_key_file_new());
    auto const size = static_cast<gsize>(content->size());
    if (!g_key_file_load_from_data(entry.get(), content->constData(), size, G_KEY_FILE_NONE, nullptr))
        return std::nullopt;
    GStringOwner const icon(g_key_file_get_locale_string(
        entry.get(), G_KEY_FILE_DESKTOP_GROUP, G_KEY_FILE_DESKTOP_KEY_ICON, nullptr, nullptr));
    if (!icon || !*icon)
        return std::nullopt;
    return std::string(icon.get());
}

QIcon desktopEntryIcon(QByteArray const& path)
{
    auto const named = iconNamedByDesktopEntry(path);
    if (!named)
        return {};
    if (named->front() == '/')
        return pictureIcon(named->c_str());
    QString const name = exactText(*named);
    return themedIcon({ name, withoutPictureExtension(name) });
}

QIcon applicationIcon()
{
    return themedIcon({ QStringLiteral("application-x-executable"), QStringLiteral("application-default-icon") });
}

bool isApplicationType(char const* contentType)
{
    return contentType
        && (g_content_type_is_a(contentType, "application/x-executable")
            || g_content_type_is_a(contentType, "application/x-desktop")
            || g_content_type_is_a(contentType, "application/vnd.appimage"));
}

QIcon documentIcon()
{
    return themedIcon({ QStringLiteral("text-x-generic"), QStringLiteral("unknown") });
}

FoundFileIcon iconOfMissingFile(FileURL const& url)
{
    if (url.hasDirectoryPath())
        return { themedIcon({ QStringLiteral("folder"), QStringLiteral("inode-directory") }), FileShape::folder };
    return { documentIcon(), FileShape::document };
}

}

FoundFileIcon findFileIcon(FileURL const& url)
{
    if (auto const volume = volumeIcon(url.path()))
        return { iconOf(volume.get()), FileShape::folder };
    auto const path = pathBytes(url);
    GObjectOwner<GFile> const file(g_file_new_for_path(path.constData()));
    // Without G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS a link shows what it leads to, and a dangling one itself.
    GObjectOwner<GFileInfo> const info(g_file_query_info(file.get(),
        G_FILE_ATTRIBUTE_STANDARD_TYPE "," G_FILE_ATTRIBUTE_STANDARD_ICON "," G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE,
        G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    if (!info)
        return iconOfMissingFile(url);

    auto const type
        = static_cast<GFileType>(g_file_info_get_attribute_uint32(info.get(), G_FILE_ATTRIBUTE_STANDARD_TYPE));
    auto const* contentType = g_file_info_get_attribute_string(info.get(), G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE);
    auto* const themed = g_file_info_get_attribute_object(info.get(), G_FILE_ATTRIBUTE_STANDARD_ICON);

    FoundFileIcon found;
    if (type == G_FILE_TYPE_DIRECTORY) {
        found.shape = FileShape::folder;
        if (hasExtension(url, "app")) {
            found.shape = FileShape::application;
            found.icon = applicationIcon();
        }
    } else if (isApplicationType(contentType) || hasExtension(url, "desktop")) {
        found.shape = FileShape::application;
        if (hasExtension(url, "desktop")) {
            found.icon = desktopEntryIcon(path);
            if (found.icon.isNull())
                found.icon = applicationIcon();
        }
    }
    if (found.icon.isNull() && themed && G_IS_ICON(themed))
        found.icon = iconOf(G_ICON(themed));
    if (found.icon.isNull() && found.shape == FileShape::document)
        found.icon = documentIcon();
    return found;
}

}
