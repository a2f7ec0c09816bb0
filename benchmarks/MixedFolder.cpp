#include "MixedFolder.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string_view>

namespace marrowick::benchmarks {

namespace {

using Random = std::mt19937;

constexpr std::array<std::string_view, 24> words { "Annual", "backup", "Budget", "Camera", "draft", "Expenses",
    "Holiday", "invoice", "Journal", "Kitchen", "letter", "Meeting", "Notes", "old", "Plan", "Quarterly", "Report",
    "scan", "Summary", "Tax", "travel", "Update", "Version", "work" };

constexpr std::array<std::string_view, 10> foreignWords { "Übersicht", "Résumé", "Žádost", "naïve", "Ångström", "Отчёт",
    "写真", "Ελλάδα", "café", "Größe" };

constexpr std::array<std::string_view, 12> extensions { ".txt", ".pdf", ".png", ".jpg", ".odt", ".ods", ".sh", ".py",
    ".html", ".zip", ".mp3", ".desktop" };

constexpr std::array<std::string_view, 6> codes { "---z", "---X", "---x", "---i", "---N", "---z---m" };

template<typename Choices>
std::string_view choose(Choices const& choices, Random& random)
{
    return choices[random() % choices.size()];
}

/// A name like "Quarterly Report 17 draft"; the index keeps it unique.
std::string makeStem(std::size_t index, Random& random)
{
    std::string stem(index % 10 == 3 ? choose(foreignWords, random) : choose(words, random));
    stem += ' ';
    stem += choose(words, random);
    stem += ' ';
    stem += std::to_string(index);
    if (random() % 3 == 0) {
        stem += ' ';
        stem += choose(words, random);
    }
    return stem;
}

enum class Kind { file, folder, link };

/// By the last digit but one, so that kinds and non-ASCII names mix.
Kind kindAt(std::size_t index)
{
    auto const share = index / 10 % 10;
    return share < 7 ? Kind::file : share < 9 ? Kind::folder : Kind::link;
}

std::string makeName(std::size_t index, Kind kind, Random& random)
{
    auto name = makeStem(index, random);
    if (index % 30 == 7)
        name = std::to_string(10 + random() % 90) + ')' + name;
    if (kind == Kind::file)
        name += choose(extensions, random);
    else if (kind == Kind::folder && random() % 20 == 0)
        name += ".app";
    if (index % 25 == 5)
        name += choose(codes, random);
    return name;
}

void require(bool success, std::string const& path)
{
    if (success)
        return;
    std::perror(path.c_str());
    std::exit(2);
}

void makeFile(std::string const& path)
{
    int const file = open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0644);
    require(file >= 0, path);
    close(file);
}

void makeEntry(std::string const& path, Kind kind, std::string const& root, Random& random)
{
    switch (kind) {
    case Kind::file:
        return makeFile(path);
    case Kind::folder:
        return require(mkdir(path.c_str(), 0755) == 0, path);
    case Kind::link: {
        // Six of ten lead to a file, three to a folder, one nowhere.
        auto const choice = random() % 10;
        auto const target = root + (choice < 6 ? "/file" : choice < 9 ? "/folder" : "/nothing");
        return require(symlink(target.c_str(), path.c_str()) == 0, path);
    }
    }
}

/// Spreads the dates over five years.
void setDate(std::string const& path, Random& random)
{
    timespec const date { 1'600'000'000 + static_cast<time_t>(random() % 157'680'000), 0 };
    std::array<timespec, 2> const dates { date, date };
    require(utimensat(AT_FDCWD, path.c_str(), dates.data(), AT_SYMLINK_NOFOLLOW) == 0, path);
}

}

char const* nameOf(Place place)
{
    switch (place) {
    case Place::disk:
        return "disk";
    case Place::memory:
        return "memory";
    }
    return "";
}

MixedFolder::MixedFolder(Place place, std::size_t entryCount)
    : root_(place == Place::disk ? "/var/tmp/marrowick-benchmark.XXXXXX" : "/dev/shm/marrowick-benchmark.XXXXXX")
    , entryCount_(entryCount)
{
    require(mkdtemp(root_.data()) != nullptr, root_);
    items_ = root_ + "/Marrowick Items";
    require(mkdir(items_.c_str(), 0755) == 0, items_);
    require(mkdir((root_ + "/folder").c_str(), 0755) == 0, root_);
    makeFile(root_ + "/file");

    Random random(20);
    for (std::size_t index = 0; index < entryCount; ++index) {
        auto const kind = kindAt(index);
        auto const path = items_ + '/' + makeName(index, kind, random);
        makeEntry(path, kind, root_, random);
        setDate(path, random);
    }
}

MixedFolder::~MixedFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

void MixedFolder::setSorted(bool isSorted)
{
    auto const orderFile = items_ + "/.mw-info.plist";
    if (isSorted)
        unlink(orderFile.c_str());
    else
        std::ofstream(orderFile) << "no list";
}

}
