#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/LongNameTrash.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Another file system than the home folder's, seen by this process alone.
class LongNameTrashTest : public testing::Test {
protected:
    void SetUp() override
    {
        root_ = folder_.folder("root");
        static bool const mayMount
            = unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        if (!mayMount)
            GTEST_SKIP() << "Mounting a file system needs root.";
        ASSERT_EQ(mount("tmpfs", root_.path().c_str(), "tmpfs", 0, "size=1m"), 0);
        isMounted_ = true;
    }
    ~LongNameTrashTest() override
    {
        if (isMounted_)
            umount2(root_.path().c_str(), MNT_DETACH);
    }

    std::string prepareTrash(std::string const& place)
    {
        folder_.folder("root/" + place + "/files");
        folder_.folder("root/" + place + "/info");
        return "root/" + place;
    }

    std::string const user_ = std::to_string(geteuid());
    std::string const name_ = std::string(250, 'n') + ".text";
    TemporaryFolder folder_;
    FileURL root_;

private:
    bool isMounted_ = false;
};

}

TEST_F(LongNameTrashTest, TheTrashOfTheItemsOwnFileSystemTakesIt)
{
    auto const trash = prepareTrash(".Trash-" + user_);
    folder_.folder("root/a b");
    auto const url = folder_.file("root/a b/" + name_, "content");
    ASSERT_TRUE(trashUnderShorterName(url));
    EXPECT_THAT(folder_.names("root/a b"), IsEmpty());
    std::string const shortName(230, 'n');
    EXPECT_EQ(folder_.content(trash + "/files/" + shortName), "content");
    EXPECT_THAT(folder_.content(trash + "/info/" + shortName + ".trashinfo"),
        testing::MatchesRegex("\\[Trash Info\\]\nPath=a%20b/" + name_
            + "\nDeletionDate=[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\n"));
}

TEST_F(LongNameTrashTest, ATrashThatIsMissingIsMadeForTheUserAlone)
{
    ASSERT_TRUE(trashUnderShorterName(folder_.file("root/" + name_, "content")));
    EXPECT_THAT(folder_.names("root/.Trash-" + user_ + "/files"), testing::SizeIs(1));
    EXPECT_EQ(
        std::filesystem::status(root_.path() + "/.Trash-" + user_).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(LongNameTrashTest, AFolderForAllUsersIsTrustedOnlyWithItsMark)
{
    auto const shared = prepareTrash(".Trash/" + user_);
    auto const own = prepareTrash(".Trash-" + user_);
    ASSERT_TRUE(trashUnderShorterName(folder_.file("root/" + name_, "1")));
    EXPECT_THAT(folder_.names(shared + "/files"), IsEmpty());
    EXPECT_THAT(folder_.names(own + "/files"), testing::SizeIs(1));

    std::filesystem::permissions(
        root_.path() + "/.Trash", std::filesystem::perms::all | std::filesystem::perms::sticky_bit);
    ASSERT_TRUE(trashUnderShorterName(folder_.file("root/" + name_, "2")));
    EXPECT_THAT(folder_.names(shared + "/files"), testing::SizeIs(1));
    EXPECT_THAT(folder_.names(own + "/files"), testing::SizeIs(1));
}

TEST_F(LongNameTrashTest, AStrangersTrashOrALinkIsNotUsed)
{
    auto const url = folder_.file("root/" + name_, "precious");
    auto const elsewhere = prepareTrash("elsewhere");
    folder_.link("root/.Trash-" + user_, folder_.url().path() + "/" + elsewhere);
    EXPECT_THAT(trashUnderShorterName(url).error().message, HasSubstr("not supported"));
    folder_.remove("root/.Trash-" + user_);

    auto const trash = prepareTrash(".Trash-" + user_);
    ASSERT_EQ(chown((folder_ / trash).path().c_str(), geteuid() + 1, getegid()), 0);
    EXPECT_FALSE(trashUnderShorterName(url));
    EXPECT_EQ(folder_.content("root/" + name_), "precious");
}

TEST_F(LongNameTrashTest, WithoutRoomForTheNoteTheItemStays)
{
    auto const trash = prepareTrash(".Trash-" + user_);
    auto const url = folder_.file("root/" + name_, "precious");
    ASSERT_EQ(mount("tmpfs", root_.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, "size=1m"), 0);
    EXPECT_THAT(trashUnderShorterName(url).error().message, HasSubstr("Read-only file system"));
    ASSERT_EQ(mount("tmpfs", root_.path().c_str(), nullptr, MS_REMOUNT, "size=1m"), 0);

    folder_.file("root/fill", std::string(1024 * 1024 - 64 * 1024, 'x'));
    for (int i = 0; i < 100; ++i) {
        std::error_code error;
        std::filesystem::copy_file(root_.path() + "/" + name_, root_.path() + "/fill" + std::to_string(i), error);
        if (error)
            break;
    }
    EXPECT_THAT(trashUnderShorterName(url).error().message, HasSubstr("No space left on device"));
    EXPECT_EQ(folder_.content("root/" + name_), "precious");
    EXPECT_THAT(folder_.names(trash + "/info"), IsEmpty());
    EXPECT_THAT(folder_.names(trash + "/files"), IsEmpty());
}

TEST_F(LongNameTrashTest, ACharacterIsNotCut)
{
    auto const trash = prepareTrash(".Trash-" + user_);
    std::string name = "x";
    while (name.size() < 250)
        name += "\xE2\x82\xAC";
    ASSERT_TRUE(trashUnderShorterName(folder_.file("root/" + name, "content")));
    EXPECT_THAT(folder_.names(trash + "/files"), ElementsAre(name.substr(0, 229)));
}

}
