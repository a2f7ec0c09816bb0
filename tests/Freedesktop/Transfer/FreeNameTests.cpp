#include "Freedesktop/Transfer/TransferTest.h"

#include <map>

namespace marrowick {

namespace {

/// Eight processes that put items of one name into one folder at the same time.
class FreeNameTest : public TransferTest, public testing::WithParamInterface<std::pair<char const*, int>> {
protected:
    void dropFromEightProcesses(std::string const& how, int count)
    {
        auto const into = folder.folder("into");
        for (int process = 1; process <= 8; ++process) {
            auto const own = std::to_string(process);
            folder.folder(own);
            folder.file(own + "/item.txt", own);
            for (int number = 0; how == "drop-move" && number < count; ++number) {
                auto const place = own + '/' + std::to_string(number);
                folder.folder(place);
                folder.file(place + "/item.txt", own);
            }
        }
        auto const item = how == "drop-move" ? "" : "/item.txt";
        auto const ended = runCommand({ "bash", "-c",
            "for process in 1 2 3 4 5 6 7 8; do \"$1\" \"$2\" \"$3/$process$4\" \"$3/into\" \"$5\" & started+=($!); "
            "done; "
            "for process in \"${started[@]}\"; do wait \"$process\" || exit 1; done",
            "drop", TRANSFER_PROGRAM, how, folder.url().path(), item, std::to_string(count) });
        EXPECT_EQ(ended.status, 0) << ended.output;
        EXPECT_EQ(ended.output, "");
    }
};

}

TEST_P(FreeNameTest, EveryItemGetsANameAndNoneIsReplaced)
{
    auto const [how, count] = GetParam();
    dropFromEightProcesses(how, count);
    std::string const suffix = std::string(how) == "drop-alias" ? " alias" : "";
    std::map<std::string, int> copiesOf;
    auto const names = namesIn(folder / "into");
    EXPECT_EQ(names.size(), 8U * static_cast<unsigned>(count));
    for (auto const& name : names)
        ++copiesOf[contentOf((folder / "into").appendingPathComponent(name))];
    for (int process = 1; process <= 8; ++process)
        EXPECT_EQ(copiesOf[std::to_string(process)], count);
    // Every number was used, so that no name was left out either.
    EXPECT_TRUE(isThere(folder / ("into/item" + suffix + ".txt")));
    for (int number = 2; number <= 8 * count; ++number)
        EXPECT_TRUE(isThere(folder / ("into/item" + suffix + ' ' + std::to_string(number) + ".txt"))) << number;
}

INSTANTIATE_TEST_SUITE_P(EightProcesses, FreeNameTest,
    testing::Values(std::pair("drop-copy", 1000), std::pair("drop-move", 100), std::pair("drop-alias", 100)),
    [](auto const& row) { return std::string(row.param.first).substr(5); });

}
