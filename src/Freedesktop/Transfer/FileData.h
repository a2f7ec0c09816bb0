#pragma once

#include <memory>
#include <sys/stat.h>

namespace marrowick {

/// Copies the bytes of regular files, of one after the other: shared with the original where the file system can, holes as
/// holes.
class FileData {
public:
    /// Copies the file open as `original`, of which `source` tells, into the empty one open as `target`. Returns zero, or
    /// the system's error number; a file that is another one by then is `changedMeanwhile`.
    int copy(int original, int target, struct stat const& source);

private:
    bool share(int original, int target, struct stat const& source);
    int copyContent(int original, int target, struct stat const& source);
    int copyUntold(int original, int target, struct stat const& source);
    int copyAroundHoles(int original, int target, off_t size);
    int copyRange(int original, int target, off_t start, off_t end);
    int copyThroughMemory(int original, int target, off_t start, off_t end);
    char* buffer();

    std::unique_ptr<char[]> buffer_;
    /// The file system whose files were found not to be shared with copies; asking for each would be slow.
    dev_t unshared_ = 0;
    bool hasUnshared_ = false;
};

}
