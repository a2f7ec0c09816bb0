#include "Freedesktop/Files/FreedesktopFileManager.h"

#include "AsOtherUser.h"
#include "Fakes/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace marrowick {
namespace {

using namespace std::string_literals;

constexpr std::string_view applicationEntry = "[Desktop Entry]\nType=Application\nName=Tool\nExec=tool\n";

class ApplicationTestTest : public testing::Test {
protected:
    std::optional<bool> isApplication(FileURL const& url) const
    {
        return files.resourceValues(url, ResourceKey::isApplication).isApplication;
    }
    FileURL appImage(std::string_view name, std::string_view content, unsigned mode) const
    {
        auto url = folder.file(name, content);
        EXPECT_EQ(::chmod(url.path().c_str(), mode), 0);
        return url;
    }

    TemporaryFolder folder;
    FreedesktopFileManager files;
};

TEST_F(ApplicationTestTest, ADirectoryIsOneByItsExactExtension)
{
    EXPECT_EQ(isApplication(folder.folder("Mail.app")), true);
    EXPECT_EQ(isApplication(folder.folder("Mail.APP")), false);
    EXPECT_EQ(isApplication(folder.folder("Mail")), false);
    EXPECT_EQ(isApplication(folder.folder("Mail.app.old")), false);
    EXPECT_EQ(isApplication(folder.folder(".app")), false) << "a dot in front begins no extension";
    EXPECT_EQ(isApplication(folder.folder("Notes.rtfd")), false);
    EXPECT_EQ(isApplication(folder.folder("x.desktop")), false);
    EXPECT_EQ(isApplication(folder.folder("x.AppImage")), false);
    EXPECT_EQ(isApplication(folder.file("File.app")), false) << "a file is none";
}

TEST_F(ApplicationTestTest, ADesktopEntryIsOneByItsType)
{
    struct Row {
        char const* name;
        std::string content;
        bool isApplication;
    };
    Row const rows[] = {
        { "tool.desktop", std::string(applicationEntry), true },
        { "comment.desktop", "# first\n\n[Desktop Entry]\n\nType = Application\n", true },
        { "broken \xFF.desktop", "[Desktop Entry]\nType=Application\nName=\xFF\n", true },
        { "actions.desktop", "[Desktop Entry]\nType=Application\n[Desktop Action x]\nType=Link\n", true },
        { "link.desktop", "[Desktop Entry]\nType=Link\nURL=https://example.org\n", false },
        { "case.desktop", "[Desktop Entry]\nType=application\n", false },
        { "longer.desktop", "[Desktop Entry]\nType=Applications\n", false },
        { "group.desktop", "[Other]\nType=Application\n", false },
        { "none.desktop", "[Desktop Entry]\nName=x\n", false },
        { "text.desktop", "just a text", false },
        { "empty.desktop", "", false },
        { "nul.desktop", "\0\0\0"s, false },
        { "tool.DESKTOP", std::string(applicationEntry), false },
        { "tool.txt", std::string(applicationEntry), false },
        { "tool", std::string(applicationEntry), false },
        { ".desktop", std::string(applicationEntry), false },
        { "huge.desktop", std::string(applicationEntry) + std::string(1 << 20, '#'), false },
    };
    for (auto const& row : rows)
        EXPECT_EQ(isApplication(folder.file(row.name, row.content)), row.isApplication) << row.name;
}

TEST_F(ApplicationTestTest, WhatIsNoFileIsNotWaitedFor)
{
    EXPECT_EQ(isApplication(folder.fifo("fifo.desktop")), false);
    EXPECT_EQ(isApplication(folder.fifo("fifo.AppImage")), false);
    EXPECT_EQ(isApplication(folder.link("link.desktop", "fifo.desktop")), false);
    EXPECT_EQ(isApplication(FileURL("/dev/zero")), false);
}

TEST_F(ApplicationTestTest, AnAppImageIsAnExecutableOfThatFormat)
{
    auto const mark = "\177ELF\2\1\1\0AI\2rest"s;
    EXPECT_EQ(isApplication(appImage("Tool.AppImage", mark, 0755)), true);
    EXPECT_EQ(isApplication(appImage("tool.appimage", mark, 0700)), true);
    EXPECT_EQ(isApplication(appImage("first-format.AppImage", "\177ELF\2\1\1\0AI\1"s, 0755)), true);
    EXPECT_EQ(isApplication(appImage("not-executable.AppImage", mark, 0644)), false);
    EXPECT_EQ(isApplication(appImage("others-only.AppImage", mark, 0611)), false);
    EXPECT_EQ(isApplication(appImage("script.AppImage", "#!/bin/sh\nAI", 0755)), false);
    EXPECT_EQ(isApplication(appImage("plain-elf.AppImage", "\177ELF\2\1\1\0\0\0\0rest"s, 0755)), false);
    EXPECT_EQ(isApplication(appImage("short.AppImage", "\177ELF", 0755)), false);
    EXPECT_EQ(isApplication(appImage("empty.AppImage", "", 0755)), false);
    EXPECT_EQ(isApplication(appImage("Tool.AppImage.zsync", mark, 0755)), false);
    EXPECT_EQ(isApplication(appImage("Tool", mark, 0755)), false);
}

TEST_F(ApplicationTestTest, ALinkIsWhatItLeadsTo)
{
    folder.folder("Mail.app");
    folder.folder("plain");
    folder.file("tool.desktop", applicationEntry);
    EXPECT_EQ(isApplication(folder.link("a", "Mail.app")), true);
    EXPECT_EQ(isApplication(folder.link("b", "a")), true);
    EXPECT_EQ(isApplication(folder.link("c", "tool.desktop")), true);
    EXPECT_EQ(isApplication(folder.link("d.app", "plain")), false) << "the link's own name does not count";
    EXPECT_EQ(isApplication(folder.link("e.txt", "Mail.app")), true);
}

TEST_F(ApplicationTestTest, WhatCannotBeReadIsUnknown)
{
    EXPECT_EQ(isApplication(folder / "missing.app"), std::nullopt);
    EXPECT_EQ(isApplication(folder.link("dangling.app", "missing")), std::nullopt);
    EXPECT_EQ(isApplication(folder.link("loop.app", "loop.app")), std::nullopt);

    auto const entry = folder.file("secret.desktop", applicationEntry);
    auto const image = folder.file("secret.AppImage", "\177ELF\2\1\1\0AI\2"s);
    ASSERT_EQ(::chmod(folder.url().path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(entry.path().c_str(), 0), 0);
    ASSERT_EQ(::chmod(image.path().c_str(), 0100), 0);
    EXPECT_EQ(askedWithoutPrivileges([&] {
        return std::string(isApplication(entry) ? "known" : "unknown")
            + (isApplication(image) ? ", known" : ", unknown");
    }),
        "unknown, unknown");
}

TEST_F(ApplicationTestTest, AHugeEntryOfManyLinesIsQuick)
{
    std::string text(applicationEntry);
    for (int i = 0; text.size() < (1 << 20) - 32; ++i)
        text += "Key" + std::to_string(i) + "=\n";
    EXPECT_EQ(isApplication(folder.file("many.desktop", text)), true);
    std::string groups(applicationEntry);
    for (int i = 0; groups.size() < (1 << 20) - 32; ++i)
        groups += "[g" + std::to_string(i) + "]\n";
    EXPECT_EQ(isApplication(folder.file("groups.desktop", groups)), true);
    std::string same(applicationEntry);
    while (same.size() < (1 << 20) - 32)
        same += "Type=Application\n";
    EXPECT_EQ(isApplication(folder.file("same.desktop", same)), true);
}

}
}
