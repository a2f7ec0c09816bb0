#pragma once

#include <cstddef>
#include <string>

namespace marrowick::benchmarks {

/// Where the folders of a benchmark lie.
enum class Place {
    /// The machine's ordinary file system, below /var/tmp.
    disk,
    /// Memory, below /dev/shm.
    memory,
};

char const* nameOf(Place place);

/// A folder of made-up entries as an items folder may hold them, always the same for the same count: 70 % files, 20 %
/// folders, 10 % links; one name in ten is not ASCII, one in twenty-five carries suffix codes, one in thirty an
/// explicit-order prefix. Removed with everything in it at the end.
class MixedFolder {
public:
    /// Stops the program where the folder cannot be made.
    MixedFolder(Place place, std::size_t entryCount);
    ~MixedFolder();
    MixedFolder(MixedFolder const&) = delete;
    MixedFolder& operator=(MixedFolder const&) = delete;

    std::string const& path() const { return items_; }
    std::size_t entryCount() const { return entryCount_; }

    /// Whether a scan sorts the folder: an order file that is no property list turns that off.
    void setSorted(bool isSorted);

private:
    /// Holds the folder and what its links lead to.
    std::string root_;
    std::string items_;
    std::size_t entryCount_;
};

}
