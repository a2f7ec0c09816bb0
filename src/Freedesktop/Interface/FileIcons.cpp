#include "Freedesktop/Interface/FileIcons.h"

#include "Freedesktop/Files/FolderWays.h"
#include "Freedesktop/Files/TimelyAnswers.h"
#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/Pictures.h"
#include "Freedesktop/Interface/VolumeIcons.h"

#include <QHash>
#include <QStringList>

#include <gio/gio.h>
#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace marrowick {

namespace {

constexpr qsizetype largestDesktopEntry = 1024 * 1024;
constexpr qsizetype mostRememberedNames = 512;
constexpr qsizetype mostRememberedEntries = 2048;

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

/// What tells a file from what stands in its place later.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::int64_t modified = 0;
    std::int64_t changed = 0;
    friend bool operator==(FileStamp const&, FileStamp const&) = default;
};

FileStamp stampOf(struct stat const& status)
{
    auto const nanoseconds
        = [](timespec const& time) { return std::int64_t { time.tv_sec } * 1'000'000'000 + time.tv_nsec; };
    return { status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim) };
}

/// As above, but a file that has stayed the same is read once.
std::optional<std::string> rememberedIconName(QByteArray const& path, struct stat const& status)
{
    struct Known {
        FileStamp stamp;
        std::optional<std::string> name;
    };
    static QHash<QByteArray, Known> remembered;
    auto const stamp = stampOf(status);
    if (auto const found = remembered.constFind(path); found != remembered.constEnd() && found->stamp == stamp)
        return found->name;
    if (remembered.size() > mostRememberedEntries)
        remembered.clear();
    return remembered.insert(path, { stamp, iconNamedByDesktopEntry(path) })->name;
}

/// The icon that a desktop entry names.
QIcon namedIcon(std::optional<std::string> const& named)
{
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

FoundFileIcon applicationWithIcon(QIcon icon)
{
    return { icon.isNull() ? applicationIcon() : std::move(icon), FileShape::application };
}

/// Asks no more of the file than what is needed; absent for everything but the file of a desktop entry.
std::optional<FoundFileIcon> iconOfDesktopEntry(FileURL const& url, QByteArray const& path)
{
    struct stat status { };
    if (!hasExtension(url, "desktop") || stat(path.constData(), &status) != 0 || S_ISDIR(status.st_mode))
        return std::nullopt;
    return applicationWithIcon(namedIcon(rememberedIconName(path, status)));
}

/// The icon of an item of the type, of which `typeIcon` is what the desktop has for it.
FoundFileIcon iconOfType(FileURL const& url, char const* contentType, bool isDirectory, GIcon* typeIcon)
{
    FoundFileIcon found;
    if (isDirectory) {
        found.shape = FileShape::folder;
        if (hasExtension(url, "app")) {
            found.shape = FileShape::application;
            found.icon = applicationIcon();
        }
    } else if (isApplicationType(contentType)) {
        found.shape = FileShape::application;
    }
    if (found.icon.isNull())
        found.icon = iconOf(typeIcon);
    if (found.icon.isNull() && found.shape == FileShape::document)
        found.icon = documentIcon();
    return found;
}

/// What a volume has to tell for an item's icon.
struct FactsInVolume {
    bool isDirectory = false;
    std::optional<std::string> iconName;
};

/// Absent where there is no item. Never reads more of it than a desktop entry's text.
std::optional<FactsInVolume> readFacts(FileURL const& url)
{
    auto const path = pathBytes(url);
    struct stat status { };
    if (stat(path.constData(), &status) != 0)
        return std::nullopt;
    FactsInVolume facts { .isDirectory = S_ISDIR(status.st_mode), .iconName = {} };
    if (!facts.isDirectory && hasExtension(url, "desktop"))
        facts.iconName = iconNamedByDesktopEntry(path);
    return facts;
}

/// The icon of an item that lies in a doubtful volume. Its type is told by its name, as file managers do where reading may
/// take long.
FoundFileIcon iconInVolume(FileURL const& url, std::string const& volume)
{
    auto const facts = answerInTime(volume, patienceForItem, [url] { return readFacts(url); }).value_or(std::nullopt);
    if (!facts)
        return iconOfMissingFile(url);
    if (!facts->isDirectory && hasExtension(url, "desktop"))
        return applicationWithIcon(namedIcon(facts->iconName));
    std::string const name(url.lastPathComponent());
    GStringOwner const contentType(
        facts->isDirectory ? g_strdup("inode/directory") : g_content_type_guess(name.c_str(), nullptr, 0, nullptr));
    GObjectOwner<GIcon> const typeIcon(g_content_type_get_icon(contentType.get()));
    return iconOfType(url, contentType.get(), facts->isDirectory, typeIcon.get());
}

}

FoundFileIcon findFileIcon(FileURL const& url)
{
    if (auto const volume = volumeIcon(url.path()))
        return { iconOf(volume.get()), FileShape::folder };
    if (auto const entered = volumeEntered(url.path()))
        return iconInVolume(url, *entered);
    auto const path = pathBytes(url);
    if (auto found = iconOfDesktopEntry(url, path))
        return *found;
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

    bool const isThemed = themed && G_IS_ICON(themed);
    return iconOfType(url, contentType, type == G_FILE_TYPE_DIRECTORY, isThemed ? G_ICON(themed) : nullptr);
}

}
