#include "Freedesktop/Files/MountedVolumes.h"

#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Files/FreedesktopFileManager.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace marrowick {
namespace {

using Paths = std::vector<std::string>;

constexpr bool internal = true;

VolumeViewer const anna { .home = "/home/anna", .userName = "anna", .isSuperuser = false };

Mount mount(std::string path, std::string options = "rw,relatime", bool isInternal = false, bool isReachable = true)
{
    return { .path = std::move(path),
        .options = std::move(options),
        .isSystemInternal = isInternal,
        .isReachable = isReachable };
}

TEST(MountedVolumes, TheRootIsAlwaysAmongThem)
{
    EXPECT_EQ(shownVolumes({}, anna), Paths { "/" });
    EXPECT_EQ(shownVolumes({ mount("/", "rw", internal), mount("/", "rw") }, anna), Paths { "/" });
    EXPECT_EQ(shownVolumes({ mount("/", "rw,x-gvfs-hide") }, anna), Paths { "/" });
}

TEST(MountedVolumes, AreThoseInTheUsersPlaces)
{
    struct Row {
        char const* path;
        bool isShown;
    };
    Row const rows[] = {
        { "/media/disk", true },
        { "/media/anna/My Disk", true },
        { "/media/anna/broken \xFF\n", true },
        { "/media", false },
        { "/mediathek/disk", false },
        { "/run/media/anna/stick", true },
        { "/run/media/annabel/stick", false },
        { "/run/media/anna", false },
        { "/home/anna/cloud", true },
        { "/home/anna", false },
        { "/home/annabel/cloud", false },
        { "/home/anna/.cache/cloud", false },
        { "/media/.hidden/disk", false },
        { "/media/disk/.snapshots", false },
        { "/mnt/data", false },
        { "/srv/www", false },
        { "/run/user/1000/gvfs", false },
    };
    for (auto const& row : rows) {
        auto const volumes = shownVolumes({ mount(row.path) }, anna);
        EXPECT_EQ(std::count(volumes.begin(), volumes.end(), row.path), row.isShown ? 1 : 0) << row.path;
    }
}

TEST(MountedVolumes, AnAdministratorSeesTheMediaOfAll)
{
    VolumeViewer const root { .home = "/root", .userName = "root", .isSuperuser = true };
    EXPECT_EQ(shownVolumes({ mount("/run/media/anna/stick") }, root), (Paths { "/", "/run/media/anna/stick" }));
}

TEST(MountedVolumes, AHomeAtTheRootShowsNothingMore)
{
    VolumeViewer const service { .home = "/", .userName = "daemon", .isSuperuser = false };
    EXPECT_EQ(shownVolumes({ mount("/mnt/data") }, service), Paths { "/" });
}

TEST(MountedVolumes, SystemMountsAndForeignMediaAreLeftOut)
{
    EXPECT_EQ(shownVolumes({ mount("/media/tmp", "rw", internal) }, anna), Paths { "/" });
    EXPECT_EQ(shownVolumes({ mount("/media/otto/stick", "rw", !internal, false) }, anna), Paths { "/" });
}

TEST(MountedVolumes, OptionsShowAndHide)
{
    EXPECT_EQ(shownVolumes({ mount("/mnt/data", "rw,x-gvfs-show,noatime") }, anna), (Paths { "/", "/mnt/data" }));
    EXPECT_EQ(shownVolumes({ mount("/mnt/data", "comment=gvfs-show", internal) }, anna), (Paths { "/", "/mnt/data" }));
    EXPECT_EQ(shownVolumes({ mount("/media/disk", "rw,x-gvfs-hide") }, anna), Paths { "/" });
    EXPECT_EQ(shownVolumes({ mount("/mnt/data", "rw,x-gvfs-shown") }, anna), Paths { "/" });
    EXPECT_EQ(shownVolumes({ mount("/mnt/data", "x-gvfs-show,x-gvfs-hide") }, anna), Paths { "/" });
}

TEST(MountedVolumes, TheLaterMountAtOnePlaceDecides)
{
    EXPECT_EQ(shownVolumes({ mount("/media/disk"), mount("/media/disk") }, anna), (Paths { "/", "/media/disk" }));
    EXPECT_EQ(shownVolumes({ mount("/media/disk"), mount("/media/disk", "rw", internal) }, anna), Paths { "/" });
}

void writeTo(char const* path, std::string const& text)
{
    std::ofstream(path) << text;
}

/// Gives this process mounts of its own; false where the system allows none.
bool enterOwnMounts()
{
    auto const user = std::to_string(::geteuid());
    if (::geteuid() != 0) {
        if (::unshare(CLONE_NEWUSER) != 0)
            return false;
        writeTo("/proc/self/setgroups", "deny");
        writeTo("/proc/self/uid_map", user + ' ' + user + " 1");
    }
    return ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

constexpr int mountsNotAllowed = 77;
constexpr int volumeMissing = 3;
constexpr int wrongVolumeShown = 4;

/// Runs `body` in a process with mounts of its own, its home at `home`; the result is its exit status.
template<typename Body>
int resultWithOwnMounts(FileURL const& home, Body const& body)
{
    pid_t const child = ::fork();
    if (child == 0) {
        ::alarm(60);
        ::setenv("HOME", home.path().c_str(), 1);
        ::_exit(enterOwnMounts() ? body() : mountsNotAllowed);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool isAmongTheVolumes(FileURL const& url)
{
    auto const volumes = FreedesktopFileManager().mountedVolumes().value_or(std::vector<FileURL>());
    return std::find(volumes.begin(), volumes.end(), url) != volumes.end();
}

TEST(MountedVolumes, ARealMountShowsWithTheBytesOfItsPath)
{
    TemporaryFolder const home;
    auto const disk = home.folder("My \\040 Disk\n\xFF");
    auto const memory = home.folder("memory");
    auto const part = home.folder("part");
    int const result = resultWithOwnMounts(home.url(), [&] {
        // A file system in memory that is not one of those that the system itself works with.
        if (::mount("disk", disk.path().c_str(), "ramfs", 0, nullptr) != 0)
            return mountsNotAllowed;
        ::mkdir((disk.path() + "/below").c_str(), 0755);
        ::mount("memory", memory.path().c_str(), "tmpfs", 0, nullptr);
        ::mount((disk.path() + "/below").c_str(), part.path().c_str(), nullptr, MS_BIND, nullptr);
        if (!isAmongTheVolumes(disk))
            return volumeMissing;
        return isAmongTheVolumes(memory) || isAmongTheVolumes(part) ? wrongVolumeShown : 0;
    });
    if (result == mountsNotAllowed)
        GTEST_SKIP() << "this system allows no mounts of one's own";
    EXPECT_EQ(result, 0);
}

// Every question about the mount point of a file system whose server does not answer waits for ever.
TEST(MountedVolumes, AMountWhoseServerDoesNotAnswerIsNotAsked)
{
    TemporaryFolder const home;
    auto const dead = home.folder("dead");
    int const result = resultWithOwnMounts(home.url(), [&] {
        int const server = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
        auto const options = "fd=" + std::to_string(server) + ",rootmode=40000,user_id=" + std::to_string(::geteuid())
            + ",group_id=" + std::to_string(::getegid());
        if (server < 0 || ::mount("dead", dead.path().c_str(), "fuse", 0, options.c_str()) != 0)
            return mountsNotAllowed;
        return isAmongTheVolumes(dead) ? 0 : volumeMissing;
    });
    if (result == mountsNotAllowed)
        GTEST_SKIP() << "this system allows no file systems of one's own";
    EXPECT_EQ(result, 0) << "-1 when it waited";
}

}
}
