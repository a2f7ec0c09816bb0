#include "Shared/Destinations.h"

#include "Support/ExchangeCoding.h"

#include <glib.h>

#include <optional>
#include <utility>

namespace marrowick::companion {

namespace {

constexpr off_t largestFile = off_t { 64 } * 1024 * 1024;

/// The time of the change tells of everything that is done to a file, also of rights that are given.
bool isSameFile(struct stat const& a, struct stat const& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size
        && a.st_ctim.tv_sec == b.st_ctim.tv_sec && a.st_ctim.tv_nsec == b.st_ctim.tv_nsec;
}

std::shared_ptr<Snapshot const> readSnapshot(std::string const& file)
{
    char* content = nullptr;
    gsize length = 0;
    if (!g_file_get_contents(file.c_str(), &content, &length, nullptr))
        return nullptr;
    std::unique_ptr<char, decltype(&g_free)> const owner(content, g_free);
    auto decoded = decodeSnapshot({ content, length });
    return decoded ? std::make_shared<Snapshot const>(std::move(*decoded)) : nullptr;
}

}

Destinations::Destinations(std::string const& folder)
    : file_(folder + "/menu-snapshot.json")
{
}

std::string Destinations::usersFolder()
{
    std::string const folder = g_get_user_data_dir();
    // A relative folder counts as none.
    return (folder.starts_with('/') ? folder : std::string(g_get_home_dir()) + "/.local/share") + "/Marrowick";
}

std::shared_ptr<Snapshot const> Destinations::current()
{
    struct stat status { };
    bool const isReadable
        = stat(file_.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_size <= largestFile;
    if (!isReadable) {
        snapshot_.reset();
        status_ = {};
        return nullptr;
    }
    if (!isSameFile(status, status_)) {
        status_ = status;
        snapshot_ = readSnapshot(file_);
    }
    return snapshot_;
}

}
