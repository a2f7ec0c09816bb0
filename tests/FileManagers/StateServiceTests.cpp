#include "Shared/StateService.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>

namespace marrowick::companion {
namespace {

constexpr char const* plainName = "org.marrowick.FileManager.Test";

std::string numberedName()
{
    return plainName + std::string(".p") + std::to_string(getpid());
}

/// Serves the main loop until `condition` holds.
bool waitFor(std::function<bool()> const& condition)
{
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        g_main_context_iteration(nullptr, FALSE);
    }
    return true;
}

/// Another program on the bus, with a connection of its own.
class Asker {
public:
    Asker()
        : connection_(g_dbus_connection_new_for_address_sync(std::getenv("DBUS_SESSION_BUS_ADDRESS"),
            static_cast<GDBusConnectionFlags>(
                G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr))
    {
    }
    ~Asker()
    {
        g_dbus_connection_close_sync(connection_, nullptr, nullptr);
        g_object_unref(connection_);
    }
    Asker(Asker const&) = delete;
    Asker& operator=(Asker const&) = delete;

    /// What the bus itself says to a call about a name.
    std::string askBus(char const* method, GVariant* arguments)
    {
        return ask("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments);
    }
    bool isOwned(std::string const& name)
    {
        return askBus("NameHasOwner", g_variant_new("(s)", name.c_str())) == "(true,)";
    }
    void takeName() { askBus("RequestName", g_variant_new("(su)", plainName, 4U)); }

    std::string state(std::string const& name)
    {
        return ask(name.c_str(), "/org/marrowick/FileManager", "org.marrowick.FileManager", "GetState", nullptr);
    }

    /// The printed answer, or the name of the error.
    std::string ask(char const* name, char const* path, char const* interface, char const* method, GVariant* arguments)
    {
        answer_.reset();
        g_dbus_connection_call(connection_, name, path, interface, method, arguments, nullptr,
            G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, answered, this);
        return waitFor([&] { return answer_.has_value(); }) ? *answer_ : "no answer";
    }

private:
    static void answered(GObject* connection, GAsyncResult* result, void* self)
    {
        GError* error = nullptr;
        auto* answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error);
        char* const printed = answer ? g_variant_print(answer, FALSE) : g_dbus_error_get_remote_error(error);
        static_cast<Asker*>(self)->answer_ = printed ? printed : "an error of no name";
        g_free(printed);
        g_clear_pointer(&answer, g_variant_unref);
        g_clear_error(&error);
    }

    GDBusConnection* connection_;
    std::optional<std::string> answer_;
};

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
    first.takeName();
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
