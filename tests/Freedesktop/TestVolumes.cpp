#include "Freedesktop/TestVolumes.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <linux/fuse.h>
#include <memory>
#include <poll.h>
#include <sched.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace marrowick {

namespace {

class OwnMounts : public testing::Environment {
public:
    void SetUp() override
    {
        areThere = unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }

    bool areThere = false;
};

auto const* const ownMounts
    = static_cast<OwnMounts const*>(testing::AddGlobalTestEnvironment(std::make_unique<OwnMounts>().release()));

constexpr std::uint64_t folderNode = 2;
constexpr std::uint64_t entryNode = 3;
constexpr std::string_view entryText = SilentVolume::desktopEntryText;

/// The least that a server of files must say. Everything else it does not know, which is an answer too.
class Server {
public:
    explicit Server(int connection)
        : connection_(connection)
    {
    }

    /// Answers one question, if there is one. False when there will be none any more.
    bool serve()
    {
        auto const size = ::read(connection_, question_.data(), question_.size());
        if (size < static_cast<ssize_t>(sizeof header_))
            return size < 0 && (errno == EAGAIN || errno == EINTR || errno == ENOENT);
        std::memcpy(&header_, question_.data(), sizeof header_);
        answerQuestion();
        return true;
    }

private:
    template<typename Record>
    Record argument() const
    {
        Record record;
        std::memcpy(&record, question_.data() + sizeof header_, sizeof record);
        return record;
    }

    void reply(int error, void const* record = nullptr, std::size_t size = 0) const
    {
        fuse_out_header head {};
        head.len = static_cast<std::uint32_t>(sizeof head + size);
        head.error = -error;
        head.unique = header_.unique;
        iovec const parts[] { { &head, sizeof head }, { const_cast<void*>(record), size } };
        // Whoever asked may have gone.
        [[maybe_unused]] auto const written = ::writev(connection_, parts, size > 0 ? 2 : 1);
    }
    template<typename Record>
    void reply(Record const& record) const
    {
        reply(0, &record, sizeof record);
    }

    static fuse_attr attributes(std::uint64_t node)
    {
        fuse_attr attributes {};
        attributes.ino = node;
        attributes.mode = node == entryNode ? S_IFREG | 0644U : S_IFDIR | 0755U;
        attributes.nlink = 1;
        attributes.size = node == entryNode ? entryText.size() : 0;
        attributes.mtime = SilentVolume::modified;
        return attributes;
    }

    void lookUp() const
    {
        char const* const name = question_.data() + sizeof header_;
        fuse_entry_out entry {};
        entry.nodeid = std::strcmp(name, SilentVolume::folder) == 0 ? folderNode
            : std::strcmp(name, SilentVolume::desktopEntry) == 0    ? entryNode
                                                                    : 0;
        entry.attr = attributes(entry.nodeid);
        if (entry.nodeid == 0)
            reply(ENOENT);
        else
            reply(entry);
    }

    void read() const
    {
        auto const from = std::min<std::size_t>(argument<fuse_read_in>().offset, entryText.size());
        auto const rest = header_.nodeid == entryNode ? entryText.substr(from) : std::string_view();
        reply(0, rest.data(), rest.size());
    }

    void answerQuestion() const
    {
        switch (header_.opcode) {
        case FUSE_INIT: {
            fuse_init_out init {};
            init.major = FUSE_KERNEL_VERSION;
            init.minor = 31;
            init.max_write = 4096;
            reply(init);
            break;
        }
        case FUSE_LOOKUP:
            lookUp();
            break;
        case FUSE_GETATTR: {
            fuse_attr_out out {};
            out.attr = attributes(header_.nodeid);
            reply(out);
            break;
        }
        case FUSE_OPEN:
        case FUSE_OPENDIR:
            reply(fuse_open_out {});
            break;
        case FUSE_READ:
        case FUSE_READDIR:
            read();
            break;
        case FUSE_RELEASE:
        case FUSE_RELEASEDIR:
            reply(0);
            break;
        case FUSE_FORGET:
        case FUSE_BATCH_FORGET:
        case FUSE_INTERRUPT:
            break;
        default:
            reply(ENOSYS);
        }
    }

    int connection_;
    std::array<char, 64 * 1024> question_ {};
    fuse_in_header header_ {};
};

}

bool hasOwnMounts()
{
    return ownMounts->areThere;
}

SilentVolume::SilentVolume(std::string path)
    : path_(std::move(path))
    , connection_(::open("/dev/fuse", O_RDWR | O_NONBLOCK | O_CLOEXEC))
    , endOfAnswers_(::eventfd(0, EFD_CLOEXEC))
{
    auto const options = "fd=" + std::to_string(connection_) + ",rootmode=40000,user_id=0,group_id=0";
    isMounted_ = connection_ >= 0 && ::mount("silent", path_.c_str(), "fuse", 0, options.c_str()) == 0;
}

SilentVolume::~SilentVolume()
{
    hangUp();
    if (isMounted_)
        ::umount2(path_.c_str(), MNT_DETACH);
    ::close(endOfAnswers_);
}

void SilentVolume::answer()
{
    server_ = std::thread([this] {
        Server server(connection_);
        pollfd sources[] { { connection_, POLLIN, 0 }, { endOfAnswers_, POLLIN, 0 } };
        while (::poll(sources, 2, -1) > 0 && sources[1].revents == 0 && server.serve()) { }
    });
}

void SilentVolume::hangUp()
{
    if (server_.joinable()) {
        ::eventfd_write(endOfAnswers_, 1);
        server_.join();
    }
    if (connection_ >= 0)
        ::close(connection_);
    connection_ = -1;
}

Rescue::Rescue(SilentVolume& volume)
    : end_(::eventfd(0, EFD_CLOEXEC))
    , watch_([this, &volume] {
        constexpr int muchTooLong = 20'000;
        pollfd end { end_, POLLIN, 0 };
        wasNeeded_ = ::poll(&end, 1, muchTooLong) == 0;
        if (wasNeeded_)
            volume.hangUp();
    })
{
}

Rescue::~Rescue()
{
    ::eventfd_write(end_, 1);
    watch_.join();
    ::close(end_);
    EXPECT_FALSE(wasNeeded_) << "the volume kept the test waiting";
}

int threadCount()
{
    std::filesystem::directory_iterator const tasks("/proc/self/task");
    return static_cast<int>(std::distance(begin(tasks), end(tasks)));
}

}
