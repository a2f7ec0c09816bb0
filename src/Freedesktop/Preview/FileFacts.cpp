#include "Freedesktop/Preview/FileFacts.h"

#include "Freedesktop/Files/FreedesktopFileManager.h"
#include "Freedesktop/Files/FreedesktopFileTypes.h"
#include "Freedesktop/Files/FreedesktopFormats.h"
#include "Freedesktop/Interface/Conversions.h"

#include <dirent.h>

#include <memory>

namespace marrowick {

namespace {

struct DirectoryCloser {
    void operator()(DIR* directory) const { closedir(directory); }
};

QString itemCount(FileURL const& directory, LoadLimit const& limit)
{
    constexpr int stepsBetweenLooks = 1024;
    std::unique_ptr<DIR, DirectoryCloser> const entries(opendir(directory.path().c_str()));
    if (!entries)
        return {};
    std::uint64_t count = 0;
    bool isWhole = true;
    while (auto const* entry = readdir(entries.get())) {
        if (std::string_view const name = entry->d_name; name == "." || name == "..")
            continue;
        if (++count % stepsBetweenLooks == 0 && limit.isReached()) {
            isWhole = false;
            break;
        }
    }
    auto const number = QString::number(count);
    if (!isWhole)
        return QStringLiteral("more than %1 items").arg(number);
    return count == 1 ? QStringLiteral("1 item") : QStringLiteral("%1 items").arg(number);
}

}

FileFacts fileFacts(FileURL const& url, std::string const& dateLocale, LoadLimit const& limit)
{
    // The services keep no state, so they serve this thread, too.
    FreedesktopFileManager const files;
    FreedesktopFormats const formats(dateLocale);
    auto const resolved = files.resolvingAlias(url);
    auto const& item = resolved ? resolved.value() : url;
    auto const values = files.resourceValues(item,
        ResourceKey::isDirectory | ResourceKey::fileSize | ResourceKey::contentModificationDate
            | ResourceKey::isRegularFile);

    FileFacts facts;
    if (auto const type = FreedesktopFileTypes().type(item))
        facts.kind = displayText(type->localizedDescription.value_or(type->identifier));
    if (values.isDirectory.value_or(false))
        facts.size = itemCount(item, limit);
    else if (values.isRegularFile.value_or(false) && values.fileSize)
        facts.size = displayText(formats.fileSize(*values.fileSize));
    if (values.contentModificationDate)
        facts.date = displayText(formats.dateAndTime(*values.contentModificationDate));
    return facts;
}

}
