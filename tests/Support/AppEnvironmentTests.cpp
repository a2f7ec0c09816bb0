#include "Fakes/FakeRunningApplication.h"
#include "Fakes/TestPlatform.h"
#include "Models/MenuContext.h"
#include "Support/AppEnvironment.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

class AppEnvironmentTest : public PlatformTest {
protected:
    std::shared_ptr<FakeRunningApplication> const editor = FakeRunningApplication::make("org.example.Editor");
    std::shared_ptr<FakeRunningApplication> const mail = FakeRunningApplication::make("org.example.Mail");
    std::shared_ptr<FakeRunningApplication> const own = FakeRunningApplication::make("org.marrowick.Marrowick");
    std::shared_ptr<FakeRunningApplication> const unnamed = FakeRunningApplication::make(std::nullopt);

    static std::shared_ptr<RunningApplication> last() { return AppEnvironment::shared().lastFrontmostOtherApp(); }
};

TEST_F(AppEnvironmentTest, BeginsWithTheFirstActiveApplication)
{
    mail->active = true;
    unnamed->active = true;
    desktop.workspace.running = { editor, mail, unnamed };
    EXPECT_EQ(last(), mail);
}

TEST_F(AppEnvironmentTest, ThisProgramIsPassedOverAtTheBeginning)
{
    own->active = true;
    mail->active = true;
    desktop.workspace.running = { own, editor, mail };
    EXPECT_EQ(last(), mail);
}

TEST_F(AppEnvironmentTest, BeginsWithNoneWhenNoOtherApplicationIsActive)
{
    own->active = true;
    desktop.workspace.running = { editor, own };
    EXPECT_EQ(last(), nullptr);
    EXPECT_EQ(MenuContext::capture().frontmostBundleID, std::nullopt);
    desktop.workspace.activate(editor);
    EXPECT_EQ(MenuContext::capture().frontmostBundleID, "org.example.Editor");
}

TEST_F(AppEnvironmentTest, FollowsTheActiveApplication)
{
    AppEnvironment::shared();
    desktop.workspace.activate(editor);
    EXPECT_EQ(last(), editor);
    desktop.workspace.activate(mail);
    EXPECT_EQ(last(), mail);
}

TEST_F(AppEnvironmentTest, ActivatingThisProgramChangesNothing)
{
    AppEnvironment::shared();
    desktop.workspace.activate(editor);
    desktop.workspace.activate(own);
    EXPECT_EQ(last(), editor);
}

TEST_F(AppEnvironmentTest, AnActivationOfNobodyKnownChangesNothing)
{
    AppEnvironment::shared();
    desktop.workspace.activate(editor);
    desktop.workspace.activate(nullptr);
    EXPECT_EQ(last(), editor);
}

TEST_F(AppEnvironmentTest, AnApplicationWithoutAnIdentifierIsAnother)
{
    AppEnvironment::shared();
    desktop.workspace.activate(editor);
    desktop.workspace.activate(unnamed);
    EXPECT_EQ(last(), unnamed);
    EXPECT_EQ(MenuContext::capture().frontmostBundleID, std::nullopt);
}

TEST_F(AppEnvironmentTest, TwoMissingIdentifiersAreTheSameProgram)
{
    desktop.application.identifier = std::nullopt;
    unnamed->active = true;
    desktop.workspace.running = { unnamed };
    EXPECT_EQ(last(), nullptr);
    desktop.workspace.activate(unnamed);
    EXPECT_EQ(last(), nullptr);
    desktop.workspace.activate(own);
    EXPECT_EQ(last(), own);
}

TEST_F(AppEnvironmentTest, IdentifiersAreComparedExactly)
{
    AppEnvironment::shared();
    auto const similar = FakeRunningApplication::make("org.marrowick.marrowick");
    desktop.workspace.activate(similar);
    EXPECT_EQ(last(), similar);
}

TEST_F(AppEnvironmentTest, AnApplicationThatHasQuitIsStillAnswered)
{
    AppEnvironment::shared();
    auto shortLived = FakeRunningApplication::make("org.example.Short");
    desktop.workspace.activate(shortLived);
    shortLived.reset();
    EXPECT_EQ(MenuContext::capture().frontmostBundleID, "org.example.Short");
}

TEST_F(AppEnvironmentTest, ThePreviousApplicationIsLetGo)
{
    AppEnvironment::shared();
    auto previous = FakeRunningApplication::make("org.example.Short");
    std::weak_ptr<FakeRunningApplication> const watched = previous;
    desktop.workspace.activate(std::move(previous));
    EXPECT_FALSE(watched.expired());
    desktop.workspace.activate(editor);
    EXPECT_TRUE(watched.expired());
}

TEST_F(AppEnvironmentTest, ThereIsOneObserver)
{
    EXPECT_EQ(desktop.workspace.observerCount(), 0u);
    AppEnvironment::shared();
    AppEnvironment::shared();
    EXPECT_EQ(desktop.workspace.observerCount(), 1u);
}

class MenuContextTest : public AppEnvironmentTest { };

TEST_F(MenuContextTest, HoldsTheIdentifierOfTheApplicationSwitchedTo)
{
    AppEnvironment::shared();
    desktop.workspace.activate(editor);
    desktop.workspace.activate(mail);
    desktop.workspace.activate(own);
    EXPECT_EQ(MenuContext::capture().frontmostBundleID, "org.example.Mail");
}

TEST_F(MenuContextTest, HoldsTheSelectionAndTheFrontWindow)
{
    desktop.finder.selectTwoFiles();
    desktop.finder.frontWindow = FileURL("/a/folder");
    auto const context = MenuContext::capture();
    EXPECT_EQ(context.finderSelection, desktop.finder.selection);
    EXPECT_EQ(context.copyDestinationFolder, FileURL("/a/folder"));
}

TEST_F(MenuContextTest, WithoutAWindowThereIsNoCopyDestination)
{
    EXPECT_EQ(MenuContext::capture().copyDestinationFolder, std::nullopt);
}

TEST_F(MenuContextTest, AsksForTheSelectionFirstAndForBothAnew)
{
    std::vector<std::string> const both { std::string(FakeFinder::selectionText),
        std::string(FakeFinder::frontWindowText) };
    static_cast<void>(MenuContext::capture());
    EXPECT_EQ(desktop.finder.questions, both);
    desktop.finder.questions.clear();
    static_cast<void>(MenuContext::capture());
    EXPECT_EQ(desktop.finder.questions, both);
}

TEST_F(MenuContextTest, NeverHasATextSelection)
{
    desktop.finder.selectTwoFiles();
    desktop.finder.frontWindow = FileURL("/a/folder");
    AppEnvironment::shared();
    desktop.workspace.activate(editor);
    EXPECT_FALSE(MenuContext::capture().hasTextSelection);
}

}
}
