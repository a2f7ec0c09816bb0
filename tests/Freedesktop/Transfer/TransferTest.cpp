#include "Freedesktop/Transfer/TransferTest.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace marrowick {

namespace {

std::string readAll(int descriptor)
{
    std::string text;
    char buffer[4096];
    for (;;) {
        auto const count = ::read(descriptor, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return text;
        text.append(buffer, static_cast<std::size_t>(count));
    }
}

/// Runs `child` in a process of its own with its standard output and error on a pipe.
template<typename Child>
EndedCommand inChild(Child child)
{
    int ends[2];
    if (::pipe(ends) != 0)
        return { -1, "no pipe" };
    pid_t const process = ::fork();
    if (process == 0) {
        ::close(ends[0]);
        child(ends[1]);
        ::_exit(126);
    }
    ::close(ends[1]);
    EndedCommand ended { -1, readAll(ends[0]) };
    ::close(ends[0]);
    int status = 0;
    ::waitpid(process, &status, 0);
    ended.status = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    return ended;
}

struct stat statusOf(FileURL const& url)
{
    struct stat status { };
    EXPECT_EQ(::lstat(url.path().c_str(), &status), 0) << url.path() << ": " << std::strerror(errno);
    return status;
}

}

EndedCommand runCommand(std::vector<std::string> const& words)
{
    return inChild([&](int output) {
        ::dup2(output, STDOUT_FILENO);
        ::dup2(output, STDERR_FILENO);
        // The sanitizer's search for leaks gives up in a program that is traced.
        ::setenv("LSAN_OPTIONS", "detect_leaks=0", 1);
        std::vector<char*> arguments;
        for (auto const& word : words)
            arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        ::execvp(arguments[0], arguments.data());
    });
}

std::string asUserWithoutPrivileges(std::function<std::string()> const& work)
{
    if (::geteuid() != 0)
        return work();
    return inChild([&](int output) {
        constexpr unsigned nobody = 65534;
        std::string answer = "could not give up privileges";
        if (::setresgid(nobody, nobody, nobody) == 0 && ::setresuid(nobody, nobody, nobody) == 0)
            answer = work();
        ::_exit(::write(output, answer.data(), answer.size()) == static_cast<ssize_t>(answer.size()) ? 0 : 1);
    }).output;
}

std::string messageOf(Result<void> const& outcome)
{
    return outcome ? "done" : outcome.error().message;
}

std::string contentOf(FileURL const& url)
{
    std::ifstream stream(url.path(), std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), {} };
}

std::vector<std::string> namesIn(FileURL const& folder)
{
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder.path()))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

bool isThere(FileURL const& url)
{
    struct stat status { };
    return ::lstat(url.path().c_str(), &status) == 0;
}

dev_t deviceOf(FileURL const& url)
{
    return statusOf(url).st_dev;
}

mode_t modeOf(FileURL const& url)
{
    return statusOf(url).st_mode & 07777;
}

FolderElsewhere::FolderElsewhere()
{
    std::string pattern = "/dev/shm/marrowick-test-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr)
        ADD_FAILURE() << "no folder on the second file system: " << std::strerror(errno);
    url_ = FileURL(pattern, true);
}

FolderElsewhere::~FolderElsewhere()
{
    std::error_code ignored;
    std::filesystem::remove_all(url_.path(), ignored);
}

bool mayMount()
{
    static bool const may
        = ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return may;
}

Mount::Mount(std::string type, FileURL const& at, std::string const& options, unsigned long flags)
    : at_(at)
{
    auto const source = type.empty() ? options : type;
    EXPECT_EQ(
        ::mount(source.c_str(), at.path().c_str(), type.empty() ? nullptr : type.c_str(), flags, options.c_str()), 0)
        << type << ' ' << at.path() << ": " << std::strerror(errno);
}

Mount::~Mount()
{
    ::umount2(at_.path().c_str(), MNT_DETACH);
}

FileURL TransferTest::makeTree() const
{
    auto const tree = folder.folder("tree");
    folder.file("tree/first", "first");
    folder.file("tree/empty");
    folder.folder("tree/inner/empty");
    folder.file("tree/inner/second", std::string(300000, 's'));
    folder.link("tree/link", "nowhere");
    EXPECT_EQ(::link((tree.path() + "/first").c_str(), (tree.path() + "/inner/again").c_str()), 0);
    return tree;
}

bool TransferTest::isWholeTree(FileURL const& url)
{
    using Names = std::vector<std::string>;
    auto const inner = url.appendingPathComponent("inner");
    return isThere(url) && namesIn(url) == Names { "empty", "first", "inner", "link" }
    && namesIn(inner) == Names { "again", "empty", "second" }
    && contentOf(url.appendingPathComponent("first")) == "first"
        && contentOf(inner.appendingPathComponent("again")) == "first"
        && contentOf(inner.appendingPathComponent("second")) == std::string(300000, 's')
        && namesIn(inner.appendingPathComponent("empty")).empty();
}

}
