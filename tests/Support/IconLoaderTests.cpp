#include "Fakes/TestPlatform.h"
#include "Support/IconLoader.h"

#include <optional>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

class IconLoaderTest : public PlatformTest {
protected:
    bool isApplication(char const* path, std::optional<bool> value)
    {
        FileURL const url(path);
        desktop.fileManager.values[url].isApplication = value;
        return IconLoader::isPackageOrApp(url);
    }
};

TEST_F(IconLoaderTest, TheDesktopsWordCounts)
{
    EXPECT_TRUE(isApplication("/a/program", true));
    EXPECT_FALSE(isApplication("/a/Not.app", false));
}

TEST_F(IconLoaderTest, WhereTheDesktopCannotTellTheExtensionDoes)
{
    EXPECT_TRUE(isApplication("/a/Mail.app", std::nullopt));
    EXPECT_TRUE(isApplication("/a/My.Mail.app", std::nullopt));
    for (auto const* path : { "/a/Mail.APP", "/a/Mail", "/a/app", "/a/.app", "/a/Mail.app.zip", "/a/Notes.rtfd",
             "/a/x.prefPane", "/a.app/inside" })
        EXPECT_FALSE(isApplication(path, std::nullopt)) << path;
}

}
}
