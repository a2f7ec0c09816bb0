#include "Freedesktop/Session/OpenFixture.h"
#include "Freedesktop/Session/TestFileManager.h"

#include <filesystem>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Optional;
using testing::UnorderedElementsAre;

class OpenWithTest : public OpenTest {
protected:
    /// An entry that may be started, with `fields` at the end of its command line.
    FileURL entryTaking(std::string const& fields)
    {
        return file("entry.desktop",
            "[Desktop Entry]\nType=Application\nName=Entry\nExec=" + program_.path() + " -- " + fields + "\n", 0755);
    }

    std::vector<FileURL> twoFiles() { return { file("a b.txt", "a"), file("c.png", "c") }; }

    /// What no program should have been started with.
    void expectNotStarted()
    {
        expectNothingElse(program_);
        EXPECT_FALSE(handlers().folder.arguments());
        EXPECT_FALSE(handlers().picture.arguments());
    }

    Recorder program_ { path("program") };
};

std::vector<std::string> const hostileNames { "with space", "quote\"'`", "new\nline", "100% %f %U", "-rf",
    "broken \xFF\xC3", "$(id);&|", std::string(255, 'x'), "\xC3\xA4" };

}

TEST_F(OpenWithTest, AnEntryForSeveralFilesIsStartedOnce)
{
    workspace_.open(twoFiles(), entryTaking("%F"));
    EXPECT_THAT(program_.waitForStart(), Optional(ElementsAre("--", path("a b.txt"), path("c.png"))));
    workspace_.open(twoFiles(), entryTaking("%U"));
    EXPECT_THAT(program_.waitForStarts(1),
        ElementsAre(ElementsAre(
            "--", "file://" + folder_.url().path() + "/a%20b.txt", "file://" + folder_.url().path() + "/c.png")));
}

TEST_F(OpenWithTest, AnEntryForOneFileOrNoneIsStartedForEach)
{
    for (auto const* fields : { "%f", "" }) {
        workspace_.open(twoFiles(), entryTaking(fields));
        EXPECT_THAT(program_.waitForStarts(2),
            UnorderedElementsAre(ElementsAre("--", path("a b.txt")), ElementsAre("--", path("c.png"))))
            << fields;
    }
}

TEST_F(OpenWithTest, TheExactBytesOfNamesArrive)
{
    std::vector<FileURL> files;
    std::vector<std::string> arguments { "--" };
    for (auto const& name : hostileNames) {
        files.push_back(file(name, "x"));
        arguments.push_back(files.back().path());
    }
    workspace_.open(files, entryTaking("%F"));
    EXPECT_THAT(program_.waitForStart(), Optional(ElementsAreArray(arguments)));

    Recorder program(path("My.app/AppRun"));
    workspace_.open(files, FileURL(path("My.app"), true));
    EXPECT_THAT(program.waitForStart(), Optional(ElementsAreArray(arguments.begin() + 1, arguments.end())));
}

TEST_F(OpenWithTest, AnInstalledEntryIsStartedAndALooseOneIsShown)
{
    auto const files = twoFiles();
    auto const content = "[Desktop Entry]\nType=Application\nName=Entry\nExec=" + program_.path() + " %F\n";
    auto const installed = installedPath("open-with.desktop");
    writeFile(installed, content, 0644);
    workspace_.open(files, FileURL(installed));
    EXPECT_THAT(program_.waitForStart(), Optional(ElementsAre(files[0].path(), files[1].path())));
    std::filesystem::remove(installed);

    auto const loose = file("loose.desktop", content, 0644);
    workspace_.open(files, loose);
    EXPECT_THAT(handlers().text.waitForStart(), Optional(ElementsAre(loose.path())));
    EXPECT_FALSE(program_.arguments());
}

TEST_F(OpenWithTest, ProgramsGetTheFilesAsArguments)
{
    auto const files = twoFiles();
    workspace_.open(files, FileURL(program_.path()));
    EXPECT_THAT(program_.waitForStart(), Optional(ElementsAre(files[0].path(), files[1].path())));

    Recorder image(path("Tool.AppImage"));
    workspace_.open(files, FileURL(image.path()));
    EXPECT_THAT(image.waitForStart(), Optional(ElementsAre(files[0].path(), files[1].path())));

    Recorder bundled(path("Tool.app/Contents/Linux/Tool"));
    workspace_.open(files, FileURL(path("Tool.app"), true));
    EXPECT_THAT(bundled.waitForStart(), Optional(ElementsAre(files[0].path(), files[1].path())));
}

TEST_F(OpenWithTest, TheTextEditorIsTheUsersApplicationForText)
{
    auto const script = file("script.sh", "#!/bin/sh\n", 0755);
    workspace_.open({ script }, FileURL("/System/Applications/TextEdit.app"));
    EXPECT_THAT(handlers().text.waitForStart(), Optional(ElementsAre(script.path())));
}

TEST_F(OpenWithTest, AnEntryOfTheBusAloneGetsAllURLs)
{
    TestFileManager application(TestFileManager::Behaviour::answers, "org.example.OpenWith");
    auto const entry = file(
        "org.example.OpenWith.desktop", "[Desktop Entry]\nType=Application\nName=Bus\nDBusActivatable=true\n", 0755);
    workspace_.open(twoFiles(), entry);
    ASSERT_TRUE(waitFor([&] { return !application.calls().empty(); }));
    auto const call = application.calls().front();
    EXPECT_EQ(call.method, "Open");
    EXPECT_EQ(call.uris.front(), "/org/example/OpenWith");
    EXPECT_THAT(call.uris.back(), testing::HasSubstr("a%20b.txt', 'file://"));
    EXPECT_THAT(call.uris.back(), testing::HasSubstr("c.png'"));
}

TEST_F(OpenWithTest, WhatCannotBeStartedIsPassedOver)
{
    auto const files = twoFiles();
    std::filesystem::create_directories(path("Empty.app"));
    std::filesystem::create_directories(path("pack.bundle"));
    std::filesystem::create_symlink("nowhere", path("dangling"));
    for (auto const& application :
        { FileURL(path("missing.app")), FileURL(path("Empty.app"), true), FileURL(path("pack.bundle"), true),
            FileURL(path("dangling")), file("notes.txt", "no program"), file("noexec", "\177ELF"),
            file("broken", "\177ELF", 0755), FileURL(), FileURL("relative"), FileURL("/dev/null") })
        workspace_.open(files, application);
    // No file to open.
    workspace_.open({}, FileURL(program_.path()));
    workspace_.open({ FileURL("relative"), FileURL() }, FileURL(program_.path()));
    expectNotStarted();
}

}
