#include "Freedesktop/Transfer/TransferTest.h"

#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {

namespace {

using Names = std::vector<std::string>;

/// File systems that lack something, played by calls that fail as they would there.
struct Lack {
    char const* name;
    std::vector<std::string> injections;
};

void PrintTo(Lack const& lack, std::ostream* stream)
{
    *stream << lack.name;
}

class FallbackTest : public TransferTest, public testing::WithParamInterface<Lack> {
protected:
    EndedCommand run(std::vector<std::string> const& transferWords) const
    {
        std::vector<std::string> words { "strace", "-f", "-qq", "-o", "/dev/null", "-e", "trace=all" };
        for (auto const& injection : GetParam().injections)
            words.insert(words.end(), { "-e", "inject=" + injection });
        words.emplace_back(TRANSFER_PROGRAM);
        words.insert(words.end(), transferWords.begin(), transferWords.end());
        return runCommand(words);
    }
};

}

TEST_P(FallbackTest, MovesCopiesAndNeverReplaces)
{
    auto const tree = makeTree();
    EXPECT_EQ(run({ "copy", tree.path(), (folder / "copy").path() }).output, "");
    EXPECT_TRUE(isWholeTree(folder / "copy"));
    EXPECT_EQ(run({ "move", (folder / "copy").path(), (folder / "moved").path() }).output, "");
    EXPECT_TRUE(isWholeTree(folder / "moved"));
    EXPECT_EQ(run({ "move", (folder / "moved").path(), (elsewhere / "across").path() }).output, "");
    EXPECT_TRUE(isWholeTree(elsewhere / "across"));
    EXPECT_EQ(namesIn(folder.url()), Names { "tree" });

    auto const file = folder.file("file", "file");
    EXPECT_EQ(run({ "copy", file.path(), (folder / "file copy").path() }).output, "");
    EXPECT_EQ(run({ "move", file.path(), (folder / "renamed").path() }).output, "");
    EXPECT_EQ(contentOf(folder / "file copy"), "file");
    EXPECT_EQ(contentOf(folder / "renamed"), "file");
    struct stat status { };
    ASSERT_EQ(::lstat((folder / "renamed").path().c_str(), &status), 0);
    EXPECT_EQ(status.st_nlink, 1U);
    EXPECT_EQ(namesIn(elsewhere.url()), Names { "across" });
    EXPECT_EQ(namesIn(folder.url()), (Names { "file copy", "renamed", "tree" }));

    auto const other = folder.file("other", "other");
    EXPECT_EQ(run({ "move", (folder / "renamed").path(), other.path() }).status, 1);
    EXPECT_EQ(contentOf(other), "other");
}

// The check before the transfer sees a name that is free; it is taken when the item is to get it.
TEST_P(FallbackTest, NameTakenInBetweenIsNotReplaced)
{
    auto const tree = makeTree();
    for (auto const& item : { tree, folder / "tree/first" }) {
        auto lacking = GetParam();
        std::string injections;
        for (auto const& injection : lacking.injections)
            injections += " -e inject=" + injection;
        auto const ended = runCommand({ "bash", "-c",
            "( sleep 0.4; echo theirs >\"$3\" ) & strace -f -qq -o /dev/null -e trace=all " + injections
                + " -e inject=getdents64:delay_exit=900000:when=2 \"$1\" move \"$2\" \"$3\"; status=$?; wait; exit "
                  "$status",
            "race", TRANSFER_PROGRAM, item.path(), (folder / "taken").path() });
        EXPECT_EQ(ended.output, "\u201Ctaken\u201D exists already.\n");
        EXPECT_EQ(contentOf(folder / "taken"), "theirs\n");
        folder.remove("taken");
    }
    EXPECT_TRUE(isWholeTree(tree));
}

INSTANTIATE_TEST_SUITE_P(FileSystem, FallbackTest,
    testing::Values(Lack { "WithoutRenameThatNeverReplaces", { "renameat2:error=EINVAL" } },
        Lack { "OfAnOlderKernel", { "renameat2:error=ENOSYS" } },
        Lack { "WithoutSecondNames", { "renameat2:error=EINVAL", "linkat:error=EPERM" } },
        Lack { "WithoutLocks", { "flock:error=ENOLCK" } },
        Lack { "WithoutAnyOfThem",
            { "renameat2:error=EINVAL", "linkat:error=EOPNOTSUPP", "flock:error=EOPNOTSUPP",
                "copy_file_range:error=EOPNOTSUPP", "fsetxattr,lsetxattr:error=EOPNOTSUPP",
                "fchown,fchownat:error=EPERM", "fchmod:error=EPERM" } }),
    [](auto const& row) { return std::string(row.param.name); });

}
