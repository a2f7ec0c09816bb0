#include "Fakes/TestPlatform.h"
#include "Support/FinderBridge.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Paths = std::vector<std::string>;

/// What two folders of settings panes hold.
class PreferencePanesTest : public PlatformTest {
protected:
    PreferencePanesTest() { desktop.fileManager.home = FileURL("/home/user"); }

    void install(std::string const& folder, Paths const& names)
    {
        FileURL const url(folder, true);
        auto& listing = desktop.fileManager.listings[url];
        for (auto const& name : names)
            listing.push_back({ url.appendingPathComponent(name), {} });
    }
    void installForTheSystem(Paths const& names) { install("/Library/PreferencePanes", names); }
    void installForTheUser(Paths const& names) { install("/home/user/Library/PreferencePanes", names); }

    static Paths listed()
    {
        Paths paths;
        for (auto const& url : FinderBridge::installedPreferencePanes())
            paths.push_back(url.path());
        return paths;
    }

    std::string const system = "/Library/PreferencePanes/";
    std::string const user = "/home/user/Library/PreferencePanes/";
};

TEST_F(PreferencePanesTest, AreListedByNameWithoutRegardToCase)
{
    installForTheSystem({ "Zeta.prefPane", "alpha.prefPane" });
    installForTheUser({ "Beta.prefPane" });
    EXPECT_EQ(listed(), (Paths { system + "alpha.prefPane", user + "Beta.prefPane", system + "Zeta.prefPane" }));
}

TEST_F(PreferencePanesTest, NumbersAreOrderedByTheirValue)
{
    installForTheSystem({ "Pane 10.prefPane", "Pane 9.prefPane" });
    installForTheUser({});
    EXPECT_EQ(listed(), (Paths { system + "Pane 9.prefPane", system + "Pane 10.prefPane" }));
}

TEST_F(PreferencePanesTest, OnlyTheExactExtensionCounts)
{
    installForTheSystem(
        { "x.PREFPANE", "x.prefpane", "x.prefPane.txt", "prefPane", ".prefPane", "x.app", "x", "y.prefPane" });
    installForTheUser({ "z.PrefPane" });
    EXPECT_EQ(listed(), (Paths { system + "y.prefPane" }));
}

TEST_F(PreferencePanesTest, HiddenOnesAreListed)
{
    installForTheSystem({ ".hidden.prefPane" });
    installForTheUser({});
    EXPECT_EQ(listed(), (Paths { system + ".hidden.prefPane" }));
    EXPECT_EQ(desktop.fileManager.hiddenAskedFor,
        (std::vector<HiddenItems> { HiddenItems::included, HiddenItems::included }));
}

TEST_F(PreferencePanesTest, OfEqualNamesTheSystemsComesFirst)
{
    installForTheUser({ "a.prefPane", "Same.prefPane" });
    installForTheSystem({ "SAME.prefPane", "z.prefPane" });
    EXPECT_EQ(listed(),
        (Paths { user + "a.prefPane", system + "SAME.prefPane", user + "Same.prefPane", system + "z.prefPane" }));
    EXPECT_EQ(desktop.fileManager.listed,
        (std::vector { FileURL("/Library/PreferencePanes"), FileURL("/home/user/Library/PreferencePanes") }));
}

TEST_F(PreferencePanesTest, AFolderThatCannotBeReadAddsNothingAndIsNotReported)
{
    desktop.fileManager.unreadable = { FileURL("/Library/PreferencePanes") };
    installForTheUser({ "a.prefPane" });
    EXPECT_EQ(listed(), (Paths { user + "a.prefPane" }));
    desktop.fileManager.unreadable = { FileURL("/home/user/Library/PreferencePanes") };
    installForTheSystem({ "b.prefPane" });
    EXPECT_EQ(listed(), (Paths { system + "b.prefPane" }));
    desktop.fileManager.unreadable.insert(FileURL("/Library/PreferencePanes"));
    EXPECT_EQ(listed(), Paths {});
    EXPECT_TRUE(desktop.log.lines().empty());
}

}
}
