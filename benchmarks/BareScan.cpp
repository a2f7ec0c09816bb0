#include "BareScan.h"

#include <dirent.h>
#include <fcntl.h>
#include <unicode/ustring.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

namespace marrowick::benchmarks {

namespace {

/// Calls `visit` with the name and type of each entry that is not hidden. The folder stays open meanwhile.
template<typename Visit>
void visitEntries(std::string const& folder, Visit visit)
{
    int const directory = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) {
        std::perror(folder.c_str());
        std::exit(2);
    }
    alignas(dirent64) static std::array<char, 64 * 1024> buffer;
    for (;;) {
        auto const filled = getdents64(directory, buffer.data(), buffer.size());
        if (filled <= 0)
            break;
        for (long position = 0; position < filled;) {
            auto const* entry = reinterpret_cast<dirent64 const*>(buffer.data() + position);
            position += entry->d_reclen;
            if (entry->d_name[0] != '.')
                visit(directory, static_cast<char const*>(entry->d_name), entry->d_type);
        }
    }
    close(directory);
}

std::size_t append(std::vector<char>& names, char const* name)
{
    auto const start = names.size();
    names.insert(names.end(), name, name + std::strlen(name) + 1);
    return start;
}

}

BareScan::BareScan()
{
    auto status = U_ZERO_ERROR;
    collator_ = ucol_open(locale, &status);
    ucol_setAttribute(collator_, UCOL_NUMERIC_COLLATION, UCOL_ON, &status);
    ucol_setAttribute(collator_, UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
    ucol_setAttribute(collator_, UCOL_ALTERNATE_HANDLING, UCOL_NON_IGNORABLE, &status);
    ucol_setStrength(collator_, UCOL_SECONDARY);
    if (U_FAILURE(status)) {
        std::fprintf(stderr, "no collator: %s\n", u_errorName(status));
        std::exit(2);
    }
}

BareScan::~BareScan()
{
    ucol_close(collator_);
}

BareListing BareScan::alphabetical(std::string const& folder) const
{
    BareListing listing;
    visitEntries(folder, [&](int, char const* name, std::uint8_t type) {
        listing.entries.push_back({ append(listing.names, name), type });
    });

    struct KeyedEntry {
        std::size_t key;
        std::size_t index;
    };
    std::vector<KeyedEntry> keyed;
    keyed.reserve(listing.size());
    std::vector<std::uint8_t> keys(listing.size() * 64);
    std::size_t end = 0;
    for (std::size_t index = 0; index < listing.size(); ++index) {
        std::array<char16_t, 256> text;
        std::int32_t length = 0;
        auto status = U_ZERO_ERROR;
        u_strFromUTF8(text.data(), text.size(), &length, &listing.names[listing.entries[index].name], -1, &status);
        // A key takes less than this for any name of 255 bytes.
        constexpr std::size_t roomForKey = 4096;
        if (keys.size() < end + roomForKey)
            keys.resize(std::max(keys.size() * 2, end + roomForKey));
        keyed.push_back({ end, index });
        end += static_cast<std::size_t>(ucol_getSortKey(collator_, text.data(), length, keys.data() + end, roomForKey));
    }
    auto const* texts = reinterpret_cast<char const*>(keys.data());
    std::sort(keyed.begin(), keyed.end(),
        [&](KeyedEntry const& a, KeyedEntry const& b) { return std::strcmp(texts + a.key, texts + b.key) < 0; });

    std::vector<BareListing::Entry> sorted;
    sorted.reserve(keyed.size());
    for (auto const& entry : keyed)
        sorted.push_back(listing.entries[entry.index]);
    listing.entries = std::move(sorted);
    return listing;
}

BareListing BareScan::dated(std::string const& folder) const
{
    BareListing listing;
    visitEntries(folder, [&](int directory, char const* name, std::uint8_t type) {
        struct statx values;
        if (statx(directory, name, AT_SYMLINK_NOFOLLOW, STATX_MTIME, &values) == 0)
            listing.datedEntries.push_back({ values.stx_mtime, { append(listing.names, name), type } });
    });
    return listing;
}

BareListing BareScan::datedAndSorted(std::string const& folder) const
{
    BareListing listing;
    visitEntries(folder, [&](int directory, char const* name, std::uint8_t type) {
        struct statx values;
        if (statx(directory, name, AT_SYMLINK_NOFOLLOW, STATX_MTIME, &values) != 0)
            return;
        auto const date = values.stx_mtime;
        if (type == DT_LNK && statx(directory, name, 0, STATX_TYPE, &values) == 0 && S_ISDIR(values.stx_mode))
            type = DT_DIR;
        listing.datedEntries.push_back({ date, { append(listing.names, name), type } });
    });
    std::stable_sort(listing.datedEntries.begin(), listing.datedEntries.end(),
        [](BareListing::DatedEntry const& a, BareListing::DatedEntry const& b) {
            return a.date.tv_sec != b.date.tv_sec ? a.date.tv_sec > b.date.tv_sec : a.date.tv_nsec > b.date.tv_nsec;
        });
    return listing;
}

}
