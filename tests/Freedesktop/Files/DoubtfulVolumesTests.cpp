#include "Freedesktop/Files/DoubtfulVolumes.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace marrowick {
namespace {

std::string line(std::string const& path, std::string const& fileSystem, std::string const& optionalFields = "")
{
    return "36 35 98:0 / " + path + " rw,noatime " + optionalFields + "- " + fileSystem
        + " source rw,errors=continue\n";
}

TEST(DoubtfulVolumes, AreThoseOfServersAndOtherPrograms)
{
    for (auto const* type : { "fuse", "fuse.sshfs", "fuse.gvfsd-fuse", "fuseblk", "nfs", "nfs4", "cifs", "smb3", "9p",
             "afs", "autofs", "ceph", "davfs", "fuse.glusterfs", "lustre" })
        EXPECT_EQ(doubtfulVolumes(line("/mnt", type)), VolumePaths { "/mnt" }) << type;
    for (auto const* type : { "ext4", "btrfs", "tmpfs", "ramfs", "overlay", "fusectl", "nfsd", "proc", "vfat", "f2fs",
             "rpc_pipefs", "devtmpfs" })
        EXPECT_EQ(doubtfulVolumes(line("/mnt", type)), VolumePaths {}) << type;
}

TEST(DoubtfulVolumes, AreFoundAmongTheOthersWithAnyNumberOfFields)
{
    auto const table = line("/", "ext4", "shared:1 ") + line("/a", "nfs", "shared:1 master:7 ") + line("/b", "tmpfs")
        + line("/c", "fuse.x", "propagate_from:2 ") + line("/a/d", "cifs");
    EXPECT_EQ(doubtfulVolumes(table), (VolumePaths { "/a", "/c", "/a/d" }));
}

TEST(DoubtfulVolumes, BytesThatTheTableCannotHoldAreTakenBack)
{
    struct Row {
        char const* written;
        std::string path;
    };
    Row const rows[] = {
        { "/media/My\\040Disk", "/media/My Disk" },
        { "/a\\011b\\012c\\134d\\043e", "/a\tb\nc\\d#e" },
        { "/\\134040", "/\\040" },
        { "/caf\xC3\xA9\xFF", "/caf\xC3\xA9\xFF" },
        { "/a\\04", "/a\\04" },
        { "/a\\", "/a\\" },
        { "/a\\0x9", "/a\\0x9" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(doubtfulVolumes(line(row.written, "nfs")), VolumePaths { row.path }) << row.written;
}

TEST(DoubtfulVolumes, TheLastMountedAtAPlaceCounts)
{
    EXPECT_EQ(doubtfulVolumes(line("/a", "nfs") + line("/a", "ext4")), VolumePaths {});
    EXPECT_EQ(doubtfulVolumes(line("/a", "ext4") + line("/a", "nfs")), VolumePaths { "/a" });
    EXPECT_EQ(doubtfulVolumes(line("/a", "autofs") + line("/a", "nfs4")), VolumePaths { "/a" });
}

TEST(DoubtfulVolumes, TheRootIsNone)
{
    EXPECT_EQ(doubtfulVolumes(line("/", "nfs") + line("/", "9p")), VolumePaths {});
}

TEST(DoubtfulVolumes, WhatIsNoTableHoldsNone)
{
    for (auto const* text : { "", "\n\n", "nfs", "a b c d e f", "36 35 98:0 / /a rw -", "36 35 98:0 / /a rw - ",
             "36 35 98:0 / /a rw nfs source rw", "36 35 98:0 / a rw - nfs source rw", " - nfs", "- - - - - - - - -" })
        EXPECT_EQ(doubtfulVolumes(text), VolumePaths {}) << text;
    EXPECT_EQ(doubtfulVolumes("36 35 98:0 / /a rw - nfs"), VolumePaths { "/a" }) << "the last line may be cut off";
}

}
}
