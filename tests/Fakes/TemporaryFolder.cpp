#include "Fakes/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace marrowick {

namespace {

void expectDone(int outcome, FileURL const& url)
{
    EXPECT_EQ(outcome, 0) << url.path() << ": " << std::strerror(errno);
}

}

TemporaryFolder::TemporaryFolder()
{
    auto pattern = (std::filesystem::temp_directory_path() / "marrowick-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        ADD_FAILURE() << "no temporary folder: " << std::strerror(errno);
    url_ = FileURL(std::filesystem::canonical(pattern).string(), true);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(url_.path(), ignored);
}

FileURL TemporaryFolder::file(std::string_view name, std::string_view content) const
{
    auto const url = *this / name;
    std::ofstream stream(url.path(), std::ios::binary);
    stream << content;
    stream.close();
    EXPECT_FALSE(stream.fail()) << url.path();
    return url;
}

FileURL TemporaryFolder::folder(std::string_view name) const
{
    auto const url = *this / name;
    std::error_code error;
    std::filesystem::create_directories(url.path(), error);
    EXPECT_FALSE(error) << url.path();
    return url;
}

FileURL TemporaryFolder::link(std::string_view name, std::string const& target) const
{
    auto const url = *this / name;
    expectDone(::symlink(target.c_str(), url.path().c_str()), url);
    return url;
}

FileURL TemporaryFolder::fifo(std::string_view name) const
{
    auto const url = *this / name;
    expectDone(::mkfifo(url.path().c_str(), 0600), url);
    return url;
}

void TemporaryFolder::setModified(std::string_view name, long seconds) const
{
    auto const url = *this / name;
    timespec const times[] { { seconds, 0 }, { seconds, 0 } };
    expectDone(::utimensat(AT_FDCWD, url.path().c_str(), times, AT_SYMLINK_NOFOLLOW), url);
}

void TemporaryFolder::remove(std::string_view name) const
{
    std::error_code error;
    std::filesystem::remove_all((*this / name).path(), error);
    EXPECT_FALSE(error) << name;
}

std::string TemporaryFolder::content(std::string_view name) const
{
    std::ifstream stream((*this / name).path(), std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    EXPECT_TRUE(stream.is_open()) << name;
    return content.str();
}

std::string TemporaryFolder::linkTarget(std::string_view name) const
{
    std::error_code error;
    auto const target = std::filesystem::read_symlink((*this / name).path(), error);
    EXPECT_FALSE(error) << name << ": " << error.message();
    return target.string();
}

std::vector<std::string> TemporaryFolder::names(std::string_view name) const
{
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry((*this / name).path(), error), end; entry != end;
         entry.increment(error))
        names.push_back(entry->path().filename().string());
    EXPECT_FALSE(error) << name << ": " << error.message();
    std::sort(names.begin(), names.end());
    return names;
}

}
