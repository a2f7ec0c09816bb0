#include "Shared/Locations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <glib.h>

#include <string>
#include <vector>

namespace marrowick::companion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

}

TEST(LocationsTest, PathsOfItemsOnTheDiskKeepTheirOrder)
{
    EXPECT_THAT(requestablePaths({ "file:///srv/z", "file:///srv/a%20b%25%23_", "file:///srv/%C3%A9%0A" }),
        ElementsAre("/srv/z", "/srv/a b%#_", "/srv/é\n"));
}

TEST(LocationsTest, WhatARequestCannotNameIsLeftOut)
{
    EXPECT_THAT(requestablePaths({ "trash:///x", "sftp://host/a", "smb://host/b", "computer:///", "recent:///1",
                    "file:///broken%FF", "file:///ok", "" }),
        ElementsAre("/ok"));
    EXPECT_THAT(requestablePaths({}), IsEmpty());
}

TEST(LocationsTest, TheDesktopIsItsFolder)
{
    char const* const desktop = g_get_user_special_dir(G_USER_DIRECTORY_DESKTOP);
    ASSERT_NE(desktop, nullptr);
    for (std::string const uri : { "x-caja-desktop:", "x-caja-desktop:///" })
        EXPECT_EQ(folderURI(uri), "file://" + std::string(desktop));
    for (std::string const uri :
        { "file:///srv/a%20b", "trash:///", "sftp://host/", "", "x-caja-desktop:///trash", "x-caja-desktop" })
        EXPECT_EQ(folderURI(uri), uri);
}

}
