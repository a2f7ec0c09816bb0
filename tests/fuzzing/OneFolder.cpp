#include "fuzzing/OneFolder.h"

#include "fuzzing/Fuzzing.h"

#include "Fakes/FakeCollation.h"
#include "Fakes/FakeDefaultsStore.h"

#include <algorithm>
#include <chrono>
#include <memory>

namespace marrowick {

namespace {

Error noSuchFile()
{
    return { ErrorKind::notFound, "no such file" };
}

class Disk final : public FileManager {
public:
    explicit Disk(OneFolder const& folder)
        : folder_(folder)
    {
    }

    Result<std::vector<ListedItem>> contentsOfDirectory(
        FileURL const& directory, ResourceKeys, HiddenItems) const override
    {
        require(directory == OneFolder::url(), "no other folder is listed");
        return folder_.items;
    }

    Result<void> visitNames(FileURL const&, std::function<void(std::string_view)> const&) const override
    {
        return noSuchFile();
    }

    ResourceValues resourceValues(FileURL const& url, ResourceKeys) const override
    {
        auto const item = std::find_if(
            folder_.items.begin(), folder_.items.end(), [&](ListedItem const& listed) { return listed.url == url; });
        require(item != folder_.items.end(), "nothing is asked about other items");
        return item->values;
    }

    bool fileExists(FileURL const& url) const override
    {
        return url.lastPathComponent() == ".mw-info.plist" && folder_.orderFile.has_value();
    }

    bool isNameTaken(FileURL const& url) const override { return fileExists(url); }
    std::optional<FileIdentity> identity(FileURL const&) const override { return std::nullopt; }
    Result<void> createDirectory(FileURL const&) const override { return noSuchFile(); }
    Result<void> removeFile(FileURL const&) const override { return noSuchFile(); }
    Result<FileURL> resolvingAlias(FileURL const& url) const override { return url; }
    std::vector<FileURL> urls(StandardDirectory) const override { return {}; }
    FileURL homeDirectory() const override { return FileURL("/"); }
    std::optional<std::vector<FileURL>> mountedVolumes() const override { return std::nullopt; }

private:
    OneFolder const& folder_;
};

class Contents final : public FileContents {
public:
    explicit Contents(OneFolder const& folder)
        : folder_(folder)
    {
    }

    Result<std::string> read(FileURL const&, std::size_t) const override
    {
        if (!folder_.orderFile)
            return noSuchFile();
        return *folder_.orderFile;
    }
    Result<std::string> readBeginning(FileURL const&, std::size_t) const override { return noSuchFile(); }
    Result<std::string> readUnlessLink(FileURL const& url, std::size_t limit) const override
    {
        return read(url, limit);
    }
    Result<void> replace(FileURL const&, std::string_view) const override { return noSuchFile(); }

private:
    OneFolder const& folder_;
};

char lowered(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
}

ResourceValues valuesOf(char kind, std::string_view name)
{
    ResourceValues values;
    // Some share a date.
    if (kind == lowered(kind))
        values.contentModificationDate = FileTime(std::chrono::hours(name.size() % 4));
    switch (lowered(kind)) {
    case 'f':
        values.isDirectory = values.isAliasFile = values.isApplication = false;
        break;
    case 'd':
        values.isDirectory = true;
        values.isAliasFile = values.isApplication = false;
        break;
    case 'a':
        values.isDirectory = values.isApplication = true;
        values.isAliasFile = false;
        break;
    case 'l':
        values.isDirectory = false;
        values.isAliasFile = values.aliasTargetIsDirectory = true;
        break;
    default:
        break;
    }
    return values;
}

}

FileURL OneFolder::url()
{
    return FileURL("/folder", true);
}

void OneFolder::addItems(std::string_view text)
{
    while (!text.empty()) {
        auto const length = std::min(text.find('/'), text.size());
        auto const item = text.substr(0, length);
        text.remove_prefix(std::min(length + 1, text.size()));
        if (item.size() < 2 || item[1] == '.')
            continue;
        auto const name = item.substr(1);
        auto const location = url().appendingPathComponent(name);
        if (std::none_of(items.begin(), items.end(), [&](ListedItem const& other) { return other.url == location; }))
            items.push_back({ location, valuesOf(item.front(), name) });
    }
}

Platform OneFolder::services() const
{
    auto defaults = std::make_unique<FakeDefaultsStore>();
    defaults->set("sortMode", sortMode);
    defaults->set("tossDotAppExtension", tossExtensions);
    defaults->set("tossDotScptExtension", tossExtensions);
    Platform services;
    services.fileManager = std::make_unique<Disk>(*this);
    services.fileContents = std::make_unique<Contents>(*this);
    services.collation = std::make_unique<FakeCollation>();
    services.defaultsStore = std::move(defaults);
    return services;
}

}
