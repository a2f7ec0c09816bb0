#pragma once

#include <sys/stat.h>
#include <unicode/ucol.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace marrowick::benchmarks {

/// The names of a folder, one behind the other in one block of memory, and what the system tells of each.
struct BareListing {
    struct Entry {
        std::size_t name;
        std::uint8_t type;
    };
    struct DatedEntry {
        statx_timestamp date;
        Entry entry;
    };

    std::vector<char> names;
    std::vector<Entry> entries;
    /// In the place of `entries` where dates were asked for.
    std::vector<DatedEntry> datedEntries;

    std::size_t size() const { return entries.size() + datedEntries.size(); }
};

/// Lists a folder with nothing but the system's calls, the measure of what any program must pay. Hidden entries are
/// left out; names, types and dates are kept, and nothing is made of them.
class BareScan {
public:
    /// Whose order of names all the scans use, whatever the user's language.
    static constexpr char locale[] = "en_US";

    /// A collator with the attributes of the program's.
    BareScan();
    ~BareScan();
    BareScan(BareScan const&) = delete;
    BareScan& operator=(BareScan const&) = delete;

    /// `getdents64`, one `ucol_getSortKey` per name, and a sort by the keys.
    BareListing alphabetical(std::string const& folder) const;

    /// `getdents64` and one `statx` per entry, in listing order.
    BareListing dated(std::string const& folder) const;

    /// The same, with a second `statx` of what a link leads to, and sorted by the dates, the latest first.
    BareListing datedAndSorted(std::string const& folder) const;

private:
    UCollator* collator_ = nullptr;
};

}
