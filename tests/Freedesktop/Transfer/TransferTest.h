#pragma once

#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Transfer/FreedesktopFileTransfer.h"

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

#include <gtest/gtest.h>

namespace marrowick {

/// A command that has ended: its exit status (128 and the signal for one that was killed), and all that it wrote.
struct EndedCommand {
    int status;
    std::string output;
};

EndedCommand runCommand(std::vector<std::string> const& words);

/// Runs `work` in a process of its own as a user without privileges, and returns the text that it returned. `work` must
/// not assert: a failure there would be lost.
std::string asUserWithoutPrivileges(std::function<std::string()> const& work);

/// The error's sentence, or "done".
std::string messageOf(Result<void> const& outcome);

std::string contentOf(FileURL const& url);
/// The names in a folder in byte order, hidden ones too.
std::vector<std::string> namesIn(FileURL const& folder);
bool isThere(FileURL const& url);
dev_t deviceOf(FileURL const& url);
mode_t modeOf(FileURL const& url);

/// A folder on another file system than `TemporaryFolder`'s.
class FolderElsewhere {
public:
    FolderElsewhere();
    ~FolderElsewhere();
    FolderElsewhere(FolderElsewhere const&) = delete;
    FolderElsewhere& operator=(FolderElsewhere const&) = delete;

    FileURL const& url() const { return url_; }
    FileURL operator/(std::string_view name) const { return url_.appendingPathComponent(name); }

private:
    FileURL url_;
};

/// Whether this process may mount file systems; what it mounts is seen by itself and its children alone.
bool mayMount();

/// A file system at a folder until the end of the test.
class Mount {
public:
    Mount(std::string type, FileURL const& at, std::string const& options, unsigned long flags = 0);
    ~Mount();
    Mount(Mount const&) = delete;
    Mount& operator=(Mount const&) = delete;

private:
    FileURL at_;
};

#define SKIP_UNLESS_ROOT_MAY_MOUNT()                                                                                   \
    if (!mayMount())                                                                                                   \
    GTEST_SKIP() << "Mounting a file system needs root."
#define SKIP_UNLESS_ROOT()                                                                                             \
    if (::geteuid() != 0)                                                                                              \
    GTEST_SKIP() << "This needs root."

class TransferTest : public testing::Test {
protected:
    /// A folder "tree" with a file of two names, a link, an empty file and a folder in a folder.
    FileURL makeTree() const;
    /// Whether what stands at `url` is all of `makeTree`.
    static bool isWholeTree(FileURL const& url);

    TemporaryFolder folder;
    FolderElsewhere elsewhere;
    FreedesktopFileTransfer transfer;
};

}
