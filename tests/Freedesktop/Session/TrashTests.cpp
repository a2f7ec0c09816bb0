#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Session/FreedesktopWorkspace.h"
#include "Freedesktop/Session/SessionSupport.h"

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <glib.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace marrowick {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class TrashTest : public testing::Test {
protected:
    TrashTest() { std::filesystem::remove_all(trash()); }
    ~TrashTest() override { std::filesystem::remove_all(trash()); }

    static std::filesystem::path trash() { return environmentVariable("XDG_DATA_HOME") + "/Trash"; }

    static std::string contentOf(std::filesystem::path const& path)
    {
        std::ifstream file(path, std::ios::binary);
        return { std::istreambuf_iterator<char>(file), {} };
    }

    static std::vector<std::filesystem::path> itemsIn(std::filesystem::path const& folder)
    {
        std::error_code error;
        std::filesystem::directory_iterator const items(folder, error);
        return error ? std::vector<std::filesystem::path>()
                     : std::vector<std::filesystem::path>(begin(items), end(items));
    }

    /// The places that the notes in the trash name, in exact bytes.
    static std::vector<std::string> notedPlaces()
    {
        std::vector<std::string> places;
        for (auto const& note : itemsIn(trash() / "info")) {
            auto const content = contentOf(note);
            auto const begin = std::min(content.find("Path="), content.size()) + 5;
            if (begin > content.size())
                continue;
            auto* const place
                = g_uri_unescape_string(content.substr(begin, content.find('\n', begin) - begin).c_str(), "");
            places.emplace_back(place ? place : "");
            g_free(place);
        }
        return places;
    }

    /// Recycles and waits; the message of the error, or "done".
    std::string recycle(std::vector<FileURL> const& urls)
    {
        std::optional<std::string> outcome;
        workspace_.recycle(urls, [&](std::optional<Error> error) {
            EXPECT_FALSE(outcome) << "told twice";
            outcome = error ? error->message : "done";
        });
        EXPECT_FALSE(outcome) << "told at once";
        EXPECT_TRUE(waitFor([&] { return outcome.has_value(); }));
        return outcome.value_or("nothing");
    }

    bool isThere(FileURL const& url) { return access(url.path().c_str(), F_OK) == 0; }

    TemporaryFolder folder_;
    std::shared_ptr<DeliveryGate> gate_ = std::make_shared<DeliveryGate>();
    FreedesktopWorkspace workspace_ { std::make_shared<XConnection>(), gate_, "org.marrowick.Marrowick" };
};

/// A folder on a file system that has no trash.
class FolderWithoutTrash {
public:
    FolderWithoutTrash()
    {
        char path[] = "/dev/shm/marrowick-test-XXXXXX";
        path_ = mkdtemp(path);
    }
    ~FolderWithoutTrash() { std::filesystem::remove_all(path_); }
    FolderWithoutTrash(FolderWithoutTrash const&) = delete;
    FolderWithoutTrash& operator=(FolderWithoutTrash const&) = delete;

    FileURL file(std::string const& name) const
    {
        writeFile(path_ + "/" + name, "precious");
        return FileURL(path_ + "/" + name);
    }

private:
    std::string path_;
};

struct NameRow {
    char const* what;
    std::string name;
};

std::vector<NameRow> const names {
    { "Plain", "a.txt" },
    { "Spaces", " a  b " },
    { "Quotes", "\"double\" 'single' `back` \\" },
    { "NewLine", "two\nlines" },
    { "Percent", "100% %20 %f" },
    { "Dashes", "-rf" },
    { "NotASCII",
        "Gr\xC3\xBC\xC3\x9F"
        "e.txt" },
    { "BrokenUTF8", "broken \xFF\xC3.txt" },
    { "LongestThatGIONotes", std::string(230, 'n') },
    { "FirstThatGIODoesNot", std::string(231, 'n') },
    { "NotedEmptyByGIO", std::string(245, 'n') },
    { "Longest", std::string(251, 'n') + ".txt" },
    { "LongestBroken", std::string(255, '\xFF') },
};

/// The trash program of the desktop reads names as UTF-8.
std::vector<NameRow> readableNames()
{
    std::vector<NameRow> readable;
    std::copy_if(names.begin(), names.end(), std::back_inserter(readable), [](NameRow const& row) {
        return g_utf8_validate(row.name.data(), static_cast<gssize>(row.name.size()), nullptr);
    });
    return readable;
}

class TrashNameTest : public TrashTest, public testing::WithParamInterface<NameRow> { };
class RestoredNameTest : public TrashNameTest { };

}

TEST_P(TrashNameTest, IsKeptInExactBytesAndTheContentToo)
{
    auto const url = folder_.file(GetParam().name, "content of it");
    ASSERT_EQ(recycle({ url }), "done");
    EXPECT_FALSE(isThere(url));
    EXPECT_THAT(notedPlaces(), testing::ElementsAre(url.path()));
    auto const items = itemsIn(trash() / "files");
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(contentOf(items.front()), "content of it");
    // Each item has its note, of its own name.
    EXPECT_TRUE(std::filesystem::exists(trash() / "info" / (items.front().filename().string() + ".trashinfo")));
}

TEST_P(RestoredNameTest, IsRestoredByTheTrashProgramOfTheDesktop)
{
    folder_.folder("folder");
    auto const url = folder_.file("folder/" + GetParam().name, "content of it");
    ASSERT_EQ(recycle({ url }), "done");
    ASSERT_FALSE(isThere(url));
    std::string const restore = "cd '" + folder_.url().path() + "/folder' && echo 0 | trash-restore >/dev/null";
    ASSERT_EQ(runProgram({ "/bin/sh", "-c", restore }), 0);
    EXPECT_EQ(folder_.content("folder/" + GetParam().name), "content of it");
    EXPECT_THAT(notedPlaces(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Names, TrashNameTest, testing::ValuesIn(names), [](auto const& row) { return std::string(row.param.what); });

INSTANTIATE_TEST_SUITE_P(Names, RestoredNameTest, testing::ValuesIn(readableNames()),
    [](auto const& row) { return std::string(row.param.what); });

TEST_F(TrashTest, TheTrashProgramOfTheDesktopListsIt)
{
    ASSERT_EQ(recycle({ folder_.file("listed one", "1"), folder_.file("listed two", "2") }), "done");
    auto const list = folder_.url().path() + "/list";
    ASSERT_EQ(runProgram({ "/bin/sh", "-c", "trash-list >'" + list + "'" }), 0);
    EXPECT_THAT(contentOf(list), HasSubstr(folder_.url().path() + "/listed one\n"));
    EXPECT_THAT(contentOf(list), HasSubstr(folder_.url().path() + "/listed two\n"));
}

TEST_F(TrashTest, WhereThereIsNoTrashTheItemStays)
{
    FolderWithoutTrash const elsewhere;
    for (auto const& url : { elsewhere.file("a.txt"), elsewhere.file(std::string(255, 'n')) }) {
        auto const outcome = recycle({ url });
        EXPECT_NE(outcome, "done");
        EXPECT_NE(outcome, "");
        EXPECT_EQ(contentOf(url.path()), "precious");
    }
    EXPECT_THAT(itemsIn(trash() / "files"), IsEmpty());
}

TEST_F(TrashTest, ALongNameWithoutATrashFolderStays)
{
    // Something else stands where the trash would be.
    writeFile(trash().string(), "in the way");
    for (auto const& name : { std::string("short"), std::string(255, 'n') }) {
        auto const url = folder_.file(name, "precious");
        EXPECT_NE(recycle({ url }), "done");
        EXPECT_EQ(contentOf(url.path()), "precious");
    }
}

TEST_F(TrashTest, TheFirstErrorIsToldAndTheOthersGo)
{
    auto const a = folder_.file("a", "a");
    auto const b = folder_.file("b", "b");
    auto const outcome = recycle({ a, folder_ / "missing one", FileURL("relative"), b });
    EXPECT_THAT(outcome, HasSubstr("missing one"));
    EXPECT_FALSE(isThere(a));
    EXPECT_FALSE(isThere(b));
}

TEST_F(TrashTest, WhatIsNoPlaceOnTheDiskIsAnError)
{
    for (auto const& url : { FileURL(), FileURL("relative"), FileURL(std::string("/tmp\0/x", 7)) })
        EXPECT_THAT(recycle({ url }), HasSubstr("No such file or directory")) << url.path();
    EXPECT_THAT(itemsIn(trash() / "files"), IsEmpty());
}

TEST_F(TrashTest, NothingToRecycleIsNoError)
{
    EXPECT_EQ(recycle({}), "done");
}

TEST_F(TrashTest, AFolderGoesWholeAndALinkGoesItself)
{
    auto const tree = folder_.folder("tree");
    folder_.folder("tree/sub");
    folder_.file("tree/sub/file", "deep");
    auto const target = folder_.file("target", "stays");
    auto const link = folder_.link("link", target.path());
    auto const dangling = folder_.link("dangling", "/nowhere");
    ASSERT_EQ(recycle({ tree, link, dangling }), "done");
    EXPECT_EQ(contentOf(trash() / "files/tree/sub/file"), "deep");
    EXPECT_EQ(std::filesystem::read_symlink(trash() / "files/link"), target.path());
    EXPECT_EQ(std::filesystem::read_symlink(trash() / "files/dangling"), "/nowhere");
    EXPECT_EQ(contentOf(target.path()), "stays");
}

TEST_F(TrashTest, ItemsOfOneNameAreAllKept)
{
    for (auto const& name :
        { std::string("same"), std::string(255, 'n'), std::string(254, 'n') + "m", std::string(230, 'n') }) {
        ASSERT_EQ(recycle({ folder_.file(name, "first") }), "done");
        ASSERT_EQ(recycle({ folder_.file(name, "second") }), "done");
    }
    std::vector<std::string> contents;
    for (auto const& item : itemsIn(trash() / "files"))
        contents.push_back(contentOf(item));
    EXPECT_THAT(contents,
        testing::UnorderedElementsAre("first", "second", "first", "second", "first", "second", "first", "second"));
    EXPECT_THAT(notedPlaces(), SizeIs(8));
}

TEST_F(TrashTest, AnAnswerWaitsForAClosedGate)
{
    auto const url = folder_.file("a", "a");
    int answers = 0;
    {
        DeliveryGate::Closure const closure(*gate_);
        workspace_.recycle({ url }, [&](std::optional<Error>) { ++answers; });
        ASSERT_TRUE(waitFor([&] { return !isThere(url); }));
        // What the loop holds by then would have been delivered.
        for (int i = 0; i < 50; ++i)
            waitFor([&] { return answers > 0; }, std::chrono::milliseconds(2));
        EXPECT_EQ(answers, 0);
    }
    EXPECT_TRUE(waitFor([&] { return answers == 1; }));
}

TEST_F(TrashTest, AfterTheEndOfTheWorkspaceNoAnswerComes)
{
    auto const url = folder_.file("a", "a");
    bool answered = false;
    {
        FreedesktopWorkspace shortLived(std::make_shared<XConnection>(), gate_, "org.marrowick.Marrowick");
        shortLived.recycle({ url }, [&](std::optional<Error>) { answered = true; });
        // Lets the first item start.
        QCoreApplication::sendPostedEvents();
    }
    ASSERT_TRUE(waitFor([&] { return !isThere(url); }));
    // An item that is recycled afterwards is answered afterwards.
    EXPECT_EQ(recycle({ folder_.file("b", "b") }), "done");
    EXPECT_FALSE(answered);
}

TEST_F(TrashTest, NobodyNeedsToBeTold)
{
    auto const url = folder_.file("a", "a");
    workspace_.recycle({ url }, nullptr);
    EXPECT_TRUE(waitFor([&] { return !isThere(url); }));
}

}
