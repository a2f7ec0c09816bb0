#include "Shared/Requests.h"

#include "Fakes/TemporaryFolder.h"
#include "Support/ExchangeCoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace marrowick::companion {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class RequestsTest : public testing::Test {
protected:
    std::optional<MoveRequest> read(std::string const& name) const
    {
        return decodeMoveRequest(folder_.content("Requests/" + name));
    }

    TemporaryFolder folder_;
    std::string const path_ = folder_.url().path();
    MoveRequest const request_ { "move", "/x/Dest", { "/b", "/a" } };
};

/// As if the disk were full; ends with the process.
void limitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit const limit { bytes, bytes };
    setrlimit(RLIMIT_FSIZE, &limit);
}

/// What happens to the names in a folder while it lives, in order: "+name" appeared, "-name" went, ">name" was renamed to.
class NameWatch {
public:
    explicit NameWatch(std::string const& folder)
        : notices_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        inotify_add_watch(notices_, folder.c_str(), IN_CREATE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE);
    }
    ~NameWatch() { close(notices_); }
    NameWatch(NameWatch const&) = delete;
    NameWatch& operator=(NameWatch const&) = delete;

    std::vector<std::string> events() const
    {
        std::vector<std::string> events;
        alignas(inotify_event) std::array<char, 16'384> buffer;
        auto const size = ::read(notices_, buffer.data(), buffer.size());
        for (ssize_t at = 0; at < size;) {
            inotify_event event {};
            std::memcpy(&event, &buffer[static_cast<std::size_t>(at)], sizeof event);
            char const* const name = &buffer[static_cast<std::size_t>(at)] + sizeof event;
            char const* const mark = (event.mask & IN_CREATE) ? "+" : (event.mask & IN_MOVED_TO) ? ">" : "-";
            events.push_back(mark + std::string(name));
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
        return events;
    }

private:
    int notices_;
};

}

TEST_F(RequestsTest, TheProgramReadsWhatWasWritten)
{
    ASSERT_TRUE(dropRequest(path_, request_));
    auto const names = folder_.names("Requests");
    ASSERT_THAT(names, ElementsAre(EndsWith(".json")));
    EXPECT_EQ(read(names[0]), request_);
}

TEST_F(RequestsTest, TheFileHasItsNameOnlyWhenItIsWhole)
{
    folder_.folder("Requests");
    NameWatch const watch((folder_ / "Requests").path());
    ASSERT_TRUE(dropRequest(path_, request_));
    auto const events = watch.events();
    ASSERT_THAT(events, SizeIs(3));
    EXPECT_EQ(events[0][0], '+');
    EXPECT_THAT(events[0], Not(EndsWith(".json")));
    EXPECT_EQ(events[1], "-" + events[0].substr(1));
    EXPECT_EQ(events[2], ">" + folder_.names("Requests").at(0));
}

TEST_F(RequestsTest, EachHasANameOfItsOwn)
{
    constexpr std::size_t count = 50;
    for (std::size_t i = 0; i < count; ++i)
        ASSERT_TRUE(dropRequest(path_, request_));
    EXPECT_THAT(folder_.names("Requests"), SizeIs(count));
}

TEST_F(RequestsTest, AThousandSourcesKeepTheirOrder)
{
    MoveRequest request { "copy", "/x", {} };
    for (int i = 1000; i > 0; --i)
        request.sources.push_back("/very/long/" + std::string(200, 'n') + "/" + std::to_string(i) + " %_\n\"é");
    ASSERT_TRUE(dropRequest(path_, request));
    EXPECT_EQ(read(folder_.names("Requests").at(0)), request);
}

TEST_F(RequestsTest, OnlyTheUserMayReadThem)
{
    ASSERT_TRUE(dropRequest(path_, request_));
    struct stat status { };
    ASSERT_EQ(stat((folder_ / "Requests").path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    ASSERT_EQ(stat((folder_ / ("Requests/" + folder_.names("Requests").at(0))).path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(RequestsTest, ATextThatIsNotUTF8IsRefusedAndNothingIsLeftBehind)
{
    EXPECT_FALSE(dropRequest(path_, { "move", "/x", { "/a\xff" } }));
    EXPECT_FALSE(dropRequest(path_, { "move", "/\xff", { "/a" } }));
    EXPECT_THAT(folder_.names(""), IsEmpty());
}

TEST_F(RequestsTest, AFolderThatCannotBeMadeIsAFailure)
{
    folder_.file("Requests");
    EXPECT_FALSE(dropRequest(path_, request_));
    EXPECT_FALSE(dropRequest("/proc/none", request_));
    EXPECT_THAT(folder_.names(""), ElementsAre("Requests"));
}

TEST_F(RequestsTest, AFullDiskLeavesNothingBehind)
{
    // No room for any byte: a limit on the size of files stands for it.
    EXPECT_EXIT(
        {
            limitFileSize(0);
            bool const isWritten = dropRequest(path_, request_);
            _exit(isWritten ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_THAT(folder_.names("Requests"), IsEmpty());
}

}
