#include "Freedesktop/Interface/VolumeIcons.h"
#include "Freedesktop/Files/FolderWays.h"
#include "Freedesktop/Interface/FileIcons.h"
#include "Freedesktop/Interface/Icons.h"

#include "Freedesktop/Interface/SessionSupport.h"
#include "Freedesktop/TestVolumes.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <thread>

namespace marrowick {
namespace {

/// A folder that something is mounted on while a test runs.
class VolumeIconTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!hasOwnMounts())
            GTEST_SKIP() << "this system allows no mounts of one's own";
        prepareIconTheme(log_);
    }
    ~VolumeIconTest() override { umount2(path_.c_str(), MNT_DETACH); }

    QTemporaryDir folder_;
    std::string path_ = QFile::encodeName(folder_.path()).toStdString();
    RecordingLog log_;
};

TEST_F(VolumeIconTest, AMountedFolderIsAVolumeAsLongAsItIsMounted)
{
    EXPECT_FALSE(volumeIcon(path_));
    ASSERT_EQ(mount("memory", path_.c_str(), "tmpfs", 0, nullptr), 0);
    EXPECT_TRUE(volumeIcon(path_));
    EXPECT_FALSE(volumeIcon(path_ + "/below"));
    ASSERT_EQ(umount(path_.c_str()), 0);
    EXPECT_FALSE(volumeIcon(path_));
}

TEST_F(VolumeIconTest, TheRootIsAVolume)
{
    EXPECT_TRUE(volumeIcon("/"));
    auto const found = findFileIcon(FileURL("/", true));
    EXPECT_EQ(found.shape, FileShape::folder);
    EXPECT_FALSE(found.icon.isNull());
    EXPECT_FALSE(volumeIcon(""));
}

TEST_F(VolumeIconTest, TheIconOfAVolumeThatDoesNotAnswerIsFoundAtOnce)
{
    SilentVolume volume(path_);
    if (!volume.isMounted())
        GTEST_SKIP() << "this system has no file systems of its users";
    // Somebody who asks for the folder itself.
    std::atomic<bool> hasAnswer = false;
    std::thread asking([&] {
        struct stat status { };
        stat(path_.c_str(), &status);
        hasAnswer = true;
    });

    {
        Rescue const rescue(volume);
        auto const found = findFileIcon(FileURL(path_, true));
        auto const image = iconFor(Image::iconForFile(FileURL(path_, true), 16)).pixmap(QSize(16, 16)).toImage();
        EXPECT_EQ(found.shape, FileShape::folder);
        EXPECT_FALSE(image.isNull());
        EXPECT_FALSE(hasAnswer);
    }
    volume.hangUp();
    asking.join();
}

/// Items that lead into a volume, as they stand in a menu.
class SilentIconsTest : public VolumeIconTest {
protected:
    void SetUp() override
    {
        VolumeIconTest::SetUp();
        if (IsSkipped())
            return;
        ASSERT_EQ(mkdir((path_ + "/nas").c_str(), 0700), 0);
        // By another path than the one that the mount table names.
        ASSERT_EQ(symlink(path_.c_str(), (path_ + "/again").c_str()), 0);
        for (auto const* target : { "folder", "viewer.desktop", "missing" })
            ASSERT_EQ(symlink((path_ + "/nas/" + target).c_str(), (path_ + "/to " + target).c_str()), 0);
        ASSERT_EQ(symlink("nas/viewer.desktop", (path_ + "/link.desktop").c_str()), 0);
        volume_.emplace(path_ + "/nas");
        if (!volume_->isMounted())
            GTEST_SKIP() << "this system has no file systems of its users";
        ASSERT_TRUE(eventually([&] { return volumeEntered(path_ + "/nas").has_value(); }));
    }

    static bool eventually(std::function<bool()> const& condition)
    {
        for (int tries = 0; !condition(); ++tries) {
            if (tries == 1000)
                return false;
            usleep(10'000);
        }
        return true;
    }

    void write(std::string const& name, std::string const& text) const
    {
        QFile file(QString::fromStdString(path_ + '/' + name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(QByteArray::fromStdString(text));
    }

    FoundFileIcon icon(std::string const& name, bool isFolder = false) const
    {
        return findFileIcon(FileURL(path_ + '/' + name, isFolder));
    }

    static bool areSame(QIcon const& a, QIcon const& b)
    {
        return a.pixmap(QSize(16, 16)).toImage() == b.pixmap(QSize(16, 16)).toImage();
    }

    std::optional<SilentVolume> volume_;
};

TEST_F(SilentIconsTest, WhatKeepsSilentLooksLikeSomethingMissing)
{
    Rescue const rescue(*volume_);
    auto const missing = findFileIcon(FileURL("/nonexistent"));
    for (auto const* name : { "to folder", "to viewer.desktop", "to missing", "link.desktop", "again/to folder" }) {
        EXPECT_EQ(icon(name).shape, FileShape::document) << name;
        EXPECT_TRUE(areSame(icon(name).icon, missing.icon)) << name;
    }
    for (auto const* name : { "nas", "again/nas" }) {
        EXPECT_EQ(icon(name, true).shape, FileShape::folder) << name;
        EXPECT_FALSE(icon(name, true).icon.isNull()) << name;
    }
}

TEST_F(SilentIconsTest, IsWaitedForOnce)
{
    Rescue const rescue(*volume_);
    icon("to folder");
    auto const threads = threadCount();
    for (auto const* name : { "to folder", "to missing", "link.desktop", "again/nas" })
        icon(name);
    EXPECT_EQ(threadCount(), threads);
}

TEST_F(SilentIconsTest, APictureInItIsNotWaitedFor)
{
    write("own.desktop", "[Desktop Entry]\nType=Application\nName=Own\nIcon=" + path_ + "/nas/icon.png\n");
    Rescue const rescue(*volume_);
    EXPECT_EQ(icon("own.desktop").shape, FileShape::application);
}

TEST_F(SilentIconsTest, AServerThatAnswersIsHeard)
{
    Rescue const rescue(*volume_);
    volume_->answer();
    EXPECT_TRUE(eventually([&] { return icon("to folder").shape == FileShape::folder; }));
    EXPECT_FALSE(icon("to folder").icon.isNull());
    EXPECT_TRUE(eventually([&] { return icon("link.desktop").shape == FileShape::application; }));
    write("own.desktop", SilentVolume::desktopEntryText);
    EXPECT_TRUE(eventually([&] { return areSame(icon("link.desktop").icon, icon("own.desktop").icon); }));
    EXPECT_EQ(icon("to missing").shape, FileShape::document);
}

}
}
