#include "Freedesktop/Transfer/Attributes.h"

#include "Freedesktop/Files/FileDescriptor.h"
#include "Freedesktop/Transfer/ExtendedAttributes.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace marrowick {

namespace {

/// A file system that has no such attribute, or keeps it to itself, costs the copy that attribute and no more.
bool isLoss(int number)
{
    return number == ENOSPC || number == EDQUOT || number == EIO || number == ENOMEM || number == ESTALE;
}

/// The attributes of one item on their way to its copy.
class AttributeCopy {
public:
    AttributeCopy(ExtendedAttributes from, ExtendedAttributes to, struct stat const& source)
        : from_(std::move(from))
        , to_(std::move(to))
        , permissions_(source.st_mode & 07777)
    {
    }

    /// Whether anything is to be written that needs the permission to write.
    bool hasUserAttributes() const
    {
        for (auto const& name : names_) {
            if (name.starts_with("user."))
                return true;
        }
        return false;
    }

    int read()
    {
        int const number = from_.list(names_);
        return isLoss(number) ? number : 0;
    }

    int copyAll()
    {
        for (auto const& name : names_) {
            std::string value;
            int number = from_.get(name, value);
            if (number == 0) {
                number = to_.set(name, value);
                // The permissions of the group then stand for the most that the list grants to anyone.
                if (number != 0 && name == accessListName)
                    permissions_ &= static_cast<mode_t>(~S_IRWXG) | groupPermissionsOf(value);
            }
            if (isLoss(number))
                return number;
        }
        return 0;
    }

    /// Rights of the owner and the group belong to those whom the original names, and to nobody else.
    void loseOwner() { permissions_ &= static_cast<mode_t>(~(S_ISUID | S_ISGID | S_ISVTX)); }

    mode_t permissions() const { return permissions_; }

private:
    ExtendedAttributes from_;
    ExtendedAttributes to_;
    mode_t permissions_;
    std::vector<std::string> names_;
};

/// No failure where the file system has no such thing to set.
int outcomeOf(int result)
{
    return result == 0 || errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS ? 0 : errno;
}

std::array<timespec, 2> timesOf(struct stat const& source)
{
    return { source.st_atim, source.st_mtim };
}

/// Changes the permissions of an item that is no link, without following one that took its name.
int changePermissions(int folder, char const* name, mode_t permissions)
{
    FileDescriptor const item(::openat(folder, name, O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status { };
    if (!item.isOpen() || ::fstat(item.get(), &status) != 0)
        return errno;
    if (S_ISLNK(status.st_mode))
        return ESTALE;
    return outcomeOf(::chmod(("/proc/self/fd/" + std::to_string(item.get())).c_str(), permissions));
}

}

int copyAttributes(int original, int target, struct stat const& source)
{
    AttributeCopy attributes { ExtendedAttributes(original), ExtendedAttributes(target), source };
    if (int const number = attributes.read())
        return number;
    if (::fchown(target, source.st_uid, source.st_gid) != 0) {
        if (isLoss(errno))
            return errno;
        attributes.loseOwner();
        static_cast<void>(::fchown(target, static_cast<uid_t>(-1), source.st_gid) == 0);
    }
    if (!S_ISDIR(source.st_mode) && !(source.st_mode & S_IWUSR) && attributes.hasUserAttributes())
        static_cast<void>(::fchmod(target, S_IRUSR | S_IWUSR) == 0);
    if (int const number = attributes.copyAll())
        return number;
    if (int const number = outcomeOf(::fchmod(target, attributes.permissions())))
        return number;
    auto const times = timesOf(source);
    return outcomeOf(::futimens(target, times.data()));
}

int copyAttributesOfSpecial(
    int originalFolder, char const* originalName, int targetFolder, char const* targetName, struct stat const& source)
{
    AttributeCopy attributes { ExtendedAttributes(originalFolder, originalName),
        ExtendedAttributes(targetFolder, targetName), source };
    if (int const number = attributes.read())
        return number;
    if (::fchownat(targetFolder, targetName, source.st_uid, source.st_gid, AT_SYMLINK_NOFOLLOW) != 0) {
        if (isLoss(errno))
            return errno;
        attributes.loseOwner();
        static_cast<void>(
            ::fchownat(targetFolder, targetName, static_cast<uid_t>(-1), source.st_gid, AT_SYMLINK_NOFOLLOW) == 0);
    }
    if (int const number = attributes.copyAll())
        return number;
    if (!S_ISLNK(source.st_mode)) {
        if (int const number = changePermissions(targetFolder, targetName, attributes.permissions()))
            return number;
    }
    auto const times = timesOf(source);
    return outcomeOf(::utimensat(targetFolder, targetName, times.data(), AT_SYMLINK_NOFOLLOW));
}

void dropInheritedAccess(int folder, char const* name)
{
    ExtendedAttributes const attributes(folder, name);
    attributes.remove(defaultListName);
    attributes.remove(accessListName);
}

}
