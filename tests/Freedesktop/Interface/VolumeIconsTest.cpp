#include "Freedesktop/Interface/VolumeIcons.h"
#include "Freedesktop/Interface/FileIcons.h"
#include "Freedesktop/Interface/Icons.h"

#include "Freedesktop/Interface/SessionSupport.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

namespace marrowick {
namespace {

/// Gives the test program mounts of its own before anything looks at them. Nobody else sees what it mounts.
class OwnMounts : public testing::Environment {
public:
    void SetUp() override
    {
        areThere = unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }

    /// False where the system allows none.
    bool areThere = false;
};

auto const* const ownMounts
    = static_cast<OwnMounts const*>(testing::AddGlobalTestEnvironment(std::make_unique<OwnMounts>().release()));

/// A folder that something is mounted on while a test runs.
class VolumeIconTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!ownMounts->areThere)
            GTEST_SKIP() << "this system allows no mounts of one's own";
        prepareIconTheme(log_);
    }
    ~VolumeIconTest() override { umount2(path_.c_str(), MNT_DETACH); }

    QTemporaryDir folder_;
    std::string path_ = QFile::encodeName(folder_.path()).toStdString();
    RecordingLog log_;
};

/// A volume whose server took the connection and says nothing: whoever asks it for anything waits.
class SilentVolume {
public:
    explicit SilentVolume(std::string const& path)
        : connection_(open("/dev/fuse", O_RDWR | O_CLOEXEC))
    {
        auto const options = "fd=" + std::to_string(connection_) + ",rootmode=40000,user_id=0,group_id=0";
        isMounted_ = connection_ >= 0 && mount("silent", path.c_str(), "fuse", 0, options.c_str()) == 0;
    }
    ~SilentVolume() { hangUp(); }
    SilentVolume(SilentVolume const&) = delete;
    SilentVolume& operator=(SilentVolume const&) = delete;

    bool isMounted() const { return isMounted_; }

    /// Those who wait get an error.
    void hangUp()
    {
        if (connection_ >= 0)
            close(connection_);
        connection_ = -1;
    }

private:
    int connection_ = -1;
    bool isMounted_ = false;
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

    // Should the volume be touched after all, this test fails and does not hang.
    std::atomic<bool> isDone = false;
    std::atomic<bool> wasStuck = false;
    std::thread rescue([&] {
        for (int i = 0; i < 500 && !isDone; ++i)
            usleep(10'000);
        if (!isDone) {
            wasStuck = true;
            volume.hangUp();
        }
    });
    auto const found = findFileIcon(FileURL(path_, true));
    auto const image = iconFor(Image::iconForFile(FileURL(path_, true), 16)).pixmap(QSize(16, 16)).toImage();
    isDone = true;
    rescue.join();

    EXPECT_FALSE(wasStuck);
    EXPECT_EQ(found.shape, FileShape::folder);
    EXPECT_FALSE(image.isNull());
    EXPECT_FALSE(hasAnswer);
    volume.hangUp();
    asking.join();
}

}
}
