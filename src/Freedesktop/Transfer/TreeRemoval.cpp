#include "Freedesktop/Transfer/TreeRemoval.h"

#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Transfer/DirectoryNames.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

/// One directory on the way from the top of the tree to the place of work. Only the deepest is open; the way back leads
/// through "..", and is checked against what was seen on the way down.
struct Level {
    std::string name;
    dev_t device;
    ino_t inode;
    std::vector<std::string> names;
};

class TreeRemoval {
public:
    TreeRemoval(int folder, CopiedItems const* only, bool isOwn)
        : folder_(folder)
        , only_(only)
        , isOwn_(isOwn)
    {
    }

    TransferOutcome run(char const* name)
    {
        remove(folder_, name);
        while (!levels_.empty()) {
            auto& names = levels_.back().names;
            if (names.empty()) {
                if (!leave())
                    break;
                continue;
            }
            auto const next = std::move(names.back());
            names.pop_back();
            remove(current_.get(), next.c_str());
        }
        return std::move(failure_);
    }

private:
    void fail(int number, std::string name)
    {
        if (!failure_)
            failure_ = TransferFailure { number, std::move(name) };
    }

    void remove(int folder, char const* name)
    {
        struct stat status { };
        if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            return fail(errno, name);
        if (only_ && !only_->holds(status))
            return fail(changedMeanwhile, name);
        if (S_ISDIR(status.st_mode))
            enter(folder, name, status);
        else if (::unlinkat(folder, name, 0) != 0)
            fail(errno, name);
    }

    void enter(int folder, char const* name, struct stat const& seen)
    {
        FileDescriptor directory = open(folder, name);
        struct stat status { };
        if (!directory.isOpen() || ::fstat(directory.get(), &status) != 0)
            return fail(errno, name);
        if (status.st_dev != seen.st_dev || status.st_ino != seen.st_ino)
            return fail(changedMeanwhile, name);
        if (isOwn_ && (status.st_mode & S_IRWXU) != S_IRWXU)
            static_cast<void>(::fchmod(directory.get(), S_IRWXU) == 0);
        Level level { name, status.st_dev, status.st_ino, {} };
        if (int const number = readNames(directory.get(), level.names))
            return fail(number, name);
        levels_.push_back(std::move(level));
        current_ = std::move(directory);
    }

    FileDescriptor open(int folder, char const* name) const
    {
        constexpr int flags = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
        FileDescriptor directory(::openat(folder, name, O_RDONLY | flags));
        if (directory.isOpen() || errno != EACCES || !isOwn_)
            return directory;
        FileDescriptor const closed(::openat(folder, name, O_PATH | flags));
        if (closed.isOpen())
            static_cast<void>(::chmod(("/proc/self/fd/" + std::to_string(closed.get())).c_str(), S_IRWXU) == 0);
        return FileDescriptor(::openat(folder, name, O_RDONLY | flags));
    }

    /// Back to the directory above, and removes the one that was left. False when the way back is lost.
    bool leave()
    {
        auto const left = std::move(levels_.back());
        levels_.pop_back();
        FileDescriptor above(levels_.empty() ? -1 : ::openat(current_.get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!levels_.empty() && !isWhereItWas(above, levels_.back())) {
            fail(changedMeanwhile, left.name);
            return false;
        }
        int const folder = levels_.empty() ? folder_ : above.get();
        if (::unlinkat(folder, left.name.c_str(), AT_REMOVEDIR) != 0)
            fail(errno, left.name);
        current_ = std::move(above);
        return true;
    }

    static bool isWhereItWas(FileDescriptor const& directory, Level const& level)
    {
        struct stat status { };
        return directory.isOpen() && ::fstat(directory.get(), &status) == 0 && status.st_dev == level.device
            && status.st_ino == level.inode;
    }

    int folder_;
    CopiedItems const* only_;
    bool isOwn_;
    FileDescriptor current_ { -1 };
    std::vector<Level> levels_;
    TransferOutcome failure_;
};

}

TransferOutcome removeTree(int folder, char const* name, CopiedItems const* only)
{
    return TreeRemoval(folder, only, false).run(name);
}

TransferOutcome removeOwnTree(int folder, char const* name)
{
    return TreeRemoval(folder, nullptr, true).run(name);
}

}
