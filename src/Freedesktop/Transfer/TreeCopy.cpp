#include "Freedesktop/Transfer/TreeCopy.h"

#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Transfer/Attributes.h"
#include "Freedesktop/Transfer/DirectoryNames.h"
#include "Freedesktop/Transfer/FileData.h"

#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <map>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

bool isSameItem(struct stat const& a, struct stat const& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool isStill(FileDescriptor const& directory, struct stat const& expected)
{
    struct stat status { };
    return directory.isOpen() && ::fstat(directory.get(), &status) == 0 && isSameItem(status, expected);
}

FileDescriptor openDirectory(int folder, char const* name)
{
    return FileDescriptor(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

/// Why an item could not be opened that was no link before.
int openError()
{
    return errno == ELOOP || errno == ENOTDIR ? changedMeanwhile : errno;
}

/// A directory on the way from the top of the tree to the place of work. Only the deepest pair is open; the way back leads
/// through "..", and is checked against what was seen on the way down.
struct Level {
    /// Of the original; the topmost copy has another.
    std::string name;
    struct stat original;
    struct stat target;
    std::vector<std::string> names;
};

class TreeCopy {
public:
    TreeCopy(ItemPlace from, ItemPlace to, std::function<bool(int)> const& didBegin, CopiedItems* copied)
        : from_(from)
        , to_(to)
        , didBegin_(didBegin)
        , copied_(copied)
    {
    }

    TransferOutcome run()
    {
        item_ = from_.name;
        int number = copy(from_, to_);
        while (number == 0 && !levels_.empty()) {
            auto& names = levels_.back().names;
            if (names.empty()) {
                number = leave();
                continue;
            }
            auto const next = std::move(names.back());
            names.pop_back();
            item_ = next;
            number = copy({ original_.get(), next.c_str() }, { target_.get(), next.c_str() });
        }
        if (number == 0)
            return std::nullopt;
        return TransferFailure { number, item_ };
    }

private:
    int copy(ItemPlace from, ItemPlace to)
    {
        struct stat source { };
        if (::fstatat(from.folder, from.name, &source, AT_SYMLINK_NOFOLLOW) != 0)
            return errno;
        int const number = S_ISDIR(source.st_mode) ? enter(from, to, source) : copyLeaf(from, to, source);
        if (number == 0 && copied_)
            copied_->add(source);
        return number;
    }

    int copyLeaf(ItemPlace from, ItemPlace to, struct stat const& source)
    {
        bool isLinked = false;
        int number = source.st_nlink > 1 ? linkToCopy(source, to, isLinked) : 0;
        if (number != 0 || isLinked)
            return number;
        if (S_ISREG(source.st_mode))
            number = copyFile(from, to, source);
        else if (S_ISLNK(source.st_mode))
            number = copyLink(from, to, source);
        else
            number = copySpecial(from, to, source);
        if (number == 0 && source.st_nlink > 1)
            hardLinks_.emplace(std::pair(source.st_dev, source.st_ino), pathOf(to.name));
        return number;
    }

    /// Once, when something stands at the top name.
    bool begin(int target, mode_t kind)
    {
        if (std::exchange(hasBegun_, true))
            return true;
        if (!didBegin_(target))
            return false;
        if (!S_ISLNK(kind))
            dropInheritedAccess(to_.folder, to_.name);
        return true;
    }

    int enter(ItemPlace from, ItemPlace to, struct stat const& source)
    {
        auto original = openDirectory(from.folder, from.name);
        if (!original.isOpen())
            return openError();
        Level level { from.name, {}, {}, {} };
        if (::fstat(original.get(), &level.original) != 0)
            return errno;
        if (!isSameItem(level.original, source))
            return changedMeanwhile;
        // Reached by another way than its name, as by a second mount of a directory above.
        if (!levels_.empty() && isSameItem(level.original, levels_.front().target))
            return wouldHoldItself;
        if (int const number = readNames(original.get(), level.names))
            return number;
        if (copied_ && !level.names.empty() && ::faccessat(original.get(), ".", W_OK | X_OK, AT_EACCESS) != 0)
            return errno;
        // Its owner needs all rights until it is filled; it lies below a directory that nobody else may enter.
        if (::mkdirat(to.folder, to.name, S_IRWXU) != 0)
            return errno;
        auto target = openDirectory(to.folder, to.name);
        if (!target.isOpen() || ::fstat(target.get(), &level.target) != 0)
            return errno;
        if (!begin(target.get(), S_IFDIR))
            return EBUSY;
        levels_.push_back(std::move(level));
        original_ = std::move(original);
        target_ = std::move(target);
        return 0;
    }

    /// Completes the directory at the place of work and goes back to the one above.
    int leave()
    {
        auto const left = std::move(levels_.back());
        levels_.pop_back();
        item_ = left.name;
        FileDescriptor originalAbove { -1 };
        FileDescriptor targetAbove { -1 };
        if (!levels_.empty()) {
            originalAbove = openDirectory(original_.get(), "..");
            targetAbove = openDirectory(target_.get(), "..");
            if (!isStill(originalAbove, levels_.back().original) || !isStill(targetAbove, levels_.back().target))
                return changedMeanwhile;
        }
        // Last, because its times change with what is put into it.
        if (int const number = copyAttributes(original_.get(), target_.get(), left.original))
            return number;
        original_ = std::move(originalAbove);
        target_ = std::move(targetAbove);
        return 0;
    }

    int copyFile(ItemPlace from, ItemPlace to, struct stat const& source)
    {
        FileDescriptor const original(
            ::openat(from.folder, from.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (!original.isOpen())
            return openError();
        if (!isStill(original, source))
            return changedMeanwhile;
        FileDescriptor target(::openat(to.folder, to.name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
            source.st_mode & (S_IRUSR | S_IWUSR)));
        if (!target.isOpen())
            return errno;
        if (!begin(target.get(), S_IFREG))
            return EBUSY;
        if (int const number = data_.copy(original.get(), target.get(), source))
            return number;
        if (int const number = copyAttributes(original.get(), target.get(), source))
            return number;
        // Some file systems tell only here that the data did not fit.
        return ::close(target.release()) == 0 ? 0 : errno;
    }

    int copyLink(ItemPlace from, ItemPlace to, struct stat const& source)
    {
        std::array<char, PATH_MAX + 1> text {};
        auto const length = ::readlinkat(from.folder, from.name, text.data(), text.size() - 1);
        if (length < 0)
            return errno;
        if (::symlinkat(text.data(), to.folder, to.name) != 0)
            return errno;
        return begin(-1, source.st_mode) ? copyAttributesOfSpecial(from.folder, from.name, to.folder, to.name, source)
                                         : EBUSY;
    }

    int copySpecial(ItemPlace from, ItemPlace to, struct stat const& source)
    {
        if (::mknodat(to.folder, to.name, source.st_mode & (S_IFMT | S_IRUSR | S_IWUSR), source.st_rdev) != 0)
            return errno;
        return begin(-1, source.st_mode) ? copyAttributesOfSpecial(from.folder, from.name, to.folder, to.name, source)
                                         : EBUSY;
    }

    /// The names from the top of the copy to the item `name` at the place of work.
    std::vector<std::string> pathOf(char const* name) const
    {
        std::vector<std::string> path;
        for (auto const& level : levels_)
            path.push_back(path.empty() ? to_.name : level.name);
        path.emplace_back(name);
        return path;
    }

    /// Gives the copy of an item that was copied under another name already a second name. False in `isLinked` when there is
    /// none yet, or when the file system has no such names; such an item is copied once more.
    int linkToCopy(struct stat const& source, ItemPlace to, bool& isLinked)
    {
        isLinked = false;
        auto const known = hardLinks_.find({ source.st_dev, source.st_ino });
        if (known == hardLinks_.end())
            return 0;
        auto const& path = known->second;
        FileDescriptor folder(::openat(to_.folder, ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
        for (std::size_t depth = 0; depth + 1 < path.size() && folder.isOpen(); ++depth) {
            folder = FileDescriptor(
                ::openat(folder.get(), path[depth].c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        }
        if (!folder.isOpen())
            return errno;
        if (::linkat(folder.get(), path.back().c_str(), to.folder, to.name, 0) == 0) {
            isLinked = true;
            return 0;
        }
        bool const canBeCopied = errno == EPERM || errno == EMLINK || errno == EOPNOTSUPP || errno == ENOSYS;
        return canBeCopied ? 0 : errno;
    }

    ItemPlace from_;
    ItemPlace to_;
    std::function<bool(int)> const& didBegin_;
    CopiedItems* copied_;
    bool hasBegun_ = false;
    /// The item at work, for a failure.
    std::string item_;
    FileData data_;
    FileDescriptor original_ { -1 };
    FileDescriptor target_ { -1 };
    std::vector<Level> levels_;
    std::map<std::pair<dev_t, ino_t>, std::vector<std::string>> hardLinks_;
};

}

TransferOutcome copyTree(ItemPlace from, ItemPlace to, std::function<bool(int)> const& didBegin, CopiedItems* copied)
{
    return TreeCopy(from, to, didBegin, copied).run();
}

}
