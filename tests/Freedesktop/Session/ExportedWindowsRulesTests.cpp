#include "Freedesktop/Session/ExportedWindows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace marrowick {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

FileManagerWindow exportedWindow(std::string path, std::vector<std::string> tabs, std::string connection = ":1.1")
{
    FileManagerWindow window;
    window.exported = ExportedWindow { std::move(connection), std::move(path), std::move(tabs) };
    return window;
}

/// The folders after the windows were identified, each with its number.
std::vector<std::string> identified(FileManagerWindows windows, std::vector<NamedWindow> const& named)
{
    identifyExportedWindows(windows, named);
    std::vector<std::string> found;
    for (auto const& window : windows)
        found.push_back(std::to_string(window.id) + " " + window.folderURI);
    return found;
}

/// The same for one window with the title.
std::string folder(std::vector<std::string> tabs, std::string title)
{
    FileManagerWindows windows;
    windows.push_back(exportedWindow("/w/1", std::move(tabs)));
    return identified(std::move(windows), { { 7, ":1.1", "/w/1", std::move(title) } }).at(0).substr(2);
}

/// What the answer to the question for the property says.
std::vector<std::string> told(char const* printedAnswer)
{
    GVariantOwner const answer(g_variant_ref_sink(g_variant_new_parsed(printedAnswer)));
    FileManagerWindows windows;
    appendExportedWindows(windows, answer.get(), ":1.9");
    std::vector<std::string> texts;
    for (auto const& window : windows) {
        std::string text = window.exported->connection + " " + window.exported->objectPath;
        for (auto const& uri : window.exported->folderURIs)
            text += " " + uri;
        texts.push_back(text);
    }
    return texts;
}

}

TEST(ExportedWindowsRules, TheTabWithTheWindowsTitleIsInFront)
{
    struct Row {
        std::vector<std::string> tabs;
        char const* title;
        char const* folder;
    };
    std::vector<Row> const rows {
        { {}, "a", "" },
        { { "file:///x/a" }, "a", "file:///x/a" },
        { { "file:///home/me" }, "Home", "file:///home/me" },
        { { "file:///x/a", "file:///x/b" }, "b", "file:///x/b" },
        { { "file:///x/a", "file:///x/b%20%25" }, "b %", "file:///x/b%20%25" },
        { { "file:///x/a", "file:///x/b" }, "Home", "" },
        { { "file:///x/a", "file:///y/a" }, "a", "" },
        { { "file:///x/a", "file:///x/a" }, "Other", "file:///x/a" },
        { { "file:///x/a", "file:///x/b" }, "", "" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(folder(row.tabs, row.title), row.folder) << testing::PrintToString(row.tabs) << row.title;
}

TEST(ExportedWindowsRules, AnXWindowIsFoundByConnectionAndPath)
{
    FileManagerWindows windows;
    windows.push_back(exportedWindow("/w/1", { "file:///a" }));
    windows.push_back(exportedWindow("/w/2", { "file:///b" }));
    EXPECT_THAT(identified(std::move(windows),
                    { { 5, ":1.2", "/w/1", "" }, { 6, ":1.1", "/w/2", "" }, { 7, ":1.1", "/w/1", "" } }),
        ElementsAre("7 file:///a", "6 file:///b"));
}

TEST(ExportedWindowsRules, WhatXDoesNotKnowCountsOnlyWhereItIsTheOnlyOne)
{
    FileManagerWindows one;
    one.push_back(exportedWindow("/w/1", { "file:///a" }));
    EXPECT_THAT(identified(std::move(one), {}), ElementsAre("0 file:///a"));
    FileManagerWindows two;
    two.push_back(exportedWindow("/w/1", { "file:///a" }));
    two.push_back(exportedWindow("/w/2", { "file:///b" }));
    EXPECT_THAT(identified(std::move(two), { { 5, ":1.1", "/w/2", "" } }), ElementsAre("5 file:///b"));
}

TEST(ExportedWindowsRules, WindowsOfACompanionStayAsTheyAre)
{
    FileManagerWindows windows;
    windows.push_back({ .id = 3, .isActive = false, .folderURI = "file:///companion", .selectedURIs = nullptr });
    windows.push_back(exportedWindow("/w/1", { "file:///a" }));
    EXPECT_THAT(identified(std::move(windows), {}), ElementsAre("3 file:///companion", "0 file:///a"));
}

TEST(ExportedWindowsRules, ThePropertyIsRead)
{
    EXPECT_THAT(told("(<{'/w/1': ['file:///a', 'file:///b'], '/w/2': @as []}>,)"),
        ElementsAre(":1.9 /w/1 file:///a file:///b", ":1.9 /w/2"));
    EXPECT_THAT(told("(<@a{sas} {}>,)"), IsEmpty());
}

TEST(ExportedWindowsRules, AnotherTypeSaysNothing)
{
    for (char const* const answer :
        { "()", "(1,)", "({'/w/1': ['file:///a']},)", "(<['file:///a']>,)", "(<{'/w/1': 1}>,)" })
        EXPECT_THAT(told(answer), IsEmpty()) << answer;
}

}
