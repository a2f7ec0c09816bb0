#include "Shared/StateService.h"

#include "FileManagers/Asker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace marrowick::companion {
namespace {

constexpr char const* plainName = "org.marrowick.FileManager.Test";

std::string numberedName()
{
    return plainName + std::string(".p") + std::to_string(getpid());
}

class StateServiceTest : public testing::Test {
protected:
    void start(StateService::Question question)
    {
        service_ = std::make_unique<StateService>("Test", std::move(question));
    }

    Asker asker_;
    std::unique_ptr<StateService> service_;
};

}

TEST_F(StateServiceTest, AnswersAnewEachTime)
{
    std::vector<WindowState> windows;
    start([&] { return windows; });
    ASSERT_TRUE(waitFor([&] { return asker_.isOwned(plainName); }));
    EXPECT_EQ(asker_.state(plainName), "([],)");
    windows.push_back({ 0x1'0000'0007, "file:///a%20b", { "file:///a%20b/z", "file:///a%20b/a" }, "A title", true });
    windows.push_back({ 0, "trash:///", {}, "", false });
    EXPECT_EQ(asker_.state(plainName),
        "([(4294967303, 'file:///a%20b', ['file:///a%20b/z', 'file:///a%20b/a'], 'A title', true), "
        "(0, 'trash:///', [], '', false)],)");
}

TEST_F(StateServiceTest, TextsThatAreNotUTF8AreAnsweredAllTheSame)
{
    start([] { return std::vector<WindowState> { { 1, "file:///\xff", { "file:///\xff" }, "\xff", false } }; });
    ASSERT_TRUE(waitFor([&] { return asker_.isOwned(plainName); }));
    EXPECT_EQ(asker_.state(plainName), "([(1, 'file:///\uFFFD', ['file:///\uFFFD'], '\uFFFD', false)],)");
}

TEST_F(StateServiceTest, AThousandSelectedItemsAreAnswered)
{
    start([] {
        return std::vector<WindowState> { { 1, "file:///x", std::vector<std::string>(1000, "file:///x/y"), "", true } };
    });
    ASSERT_TRUE(waitFor([&] { return asker_.isOwned(plainName); }));
    EXPECT_GT(asker_.state(plainName).size(), 1000 * std::string("'file:///x/y', ").size());
}

TEST_F(StateServiceTest, AQuestionThatThrowsIsAnError)
{
    bool isTired = true;
    start([&]() -> std::vector<WindowState> {
        if (isTired)
            throw std::runtime_error("tired");
        return {};
    });
    ASSERT_TRUE(waitFor([&] { return asker_.isOwned(plainName); }));
    EXPECT_EQ(asker_.state(plainName), "org.freedesktop.DBus.Error.Failed");
    isTired = false;
    EXPECT_EQ(asker_.state(plainName), "([],)");
}

TEST_F(StateServiceTest, ASecondProcessTakesANumberedName)
{
    Asker first;
    first.takeName(plainName);
    start([] { return std::vector<WindowState> { { 7, "file:///second", {}, "", false } }; });
    ASSERT_TRUE(waitFor([&] { return asker_.isOwned(numberedName()); }));
    EXPECT_EQ(asker_.state(numberedName()), "([(7, 'file:///second', [], '', false)],)");
}

TEST_F(StateServiceTest, AnEndedOneIsGoneFromTheBus)
{
    start([] { return std::vector<WindowState> {}; });
    ASSERT_TRUE(waitFor([&] { return asker_.isOwned(plainName); }));
    service_.reset();
    EXPECT_TRUE(waitFor([&] { return !asker_.isOwned(plainName); }));
}

TEST_F(StateServiceTest, EndsBeforeTheBusAnswered)
{
    for (int i = 0; i < 20; ++i) {
        start([]() -> std::vector<WindowState> { throw std::logic_error("gone"); });
        service_.reset();
    }
    EXPECT_TRUE(waitFor([] { return !g_main_context_pending(nullptr); }));
    EXPECT_FALSE(asker_.isOwned(plainName));
}

TEST_F(StateServiceTest, AnEarlyEndLeavesTheBusToOthers)
{
    for (int i = 0; i < 20; ++i) {
        start([] { return std::vector<WindowState> {}; });
        service_.reset();
        start([] { return std::vector<WindowState> {}; });
        ASSERT_TRUE(waitFor([&] { return asker_.isOwned(plainName); }));
        service_.reset();
        ASSERT_TRUE(waitFor([&] { return !asker_.isOwned(plainName); }));
    }
}

TEST_F(StateServiceTest, OtherMethodsAreErrors)
{
    start([] { return std::vector<WindowState> {}; });
    ASSERT_TRUE(waitFor([&] { return asker_.isOwned(plainName); }));
    EXPECT_EQ(asker_.ask(plainName, "/org/marrowick/FileManager", "org.marrowick.FileManager", "SetState", nullptr),
        "org.freedesktop.DBus.Error.UnknownMethod");
}

}

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
