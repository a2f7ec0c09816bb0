#include "Freedesktop/Files/FreedesktopDefaultsStore.h"

#include "Fakes/FakeLog.h"
#include "Platform/DefaultsStoreContract.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

namespace marrowick {
namespace {

using namespace std::chrono_literals;

std::string const root = "/org/marrowick/Marrowick/";

/// What the command writes; it must succeed.
std::string outputOf(std::string const& command)
{
    std::string output;
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    for (int c; pipe && (c = std::fgetc(pipe)) != EOF;)
        output += static_cast<char>(c);
    EXPECT_EQ(pipe ? ::pclose(pipe) : -1, 0) << command;
    while (output.ends_with('\n'))
        output.pop_back();
    return output;
}

/// `text` as one word of the shell.
std::string quoted(std::string const& text)
{
    std::string result = "'";
    for (char const c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

void writeFromOutside(std::string const& key, std::string const& value)
{
    outputOf("dconf write " + quoted(root + key) + ' ' + quoted(value));
}

class SessionBus : public testing::Test {
protected:
    void SetUp() override { outputOf("dconf reset -f " + root); }

    FakeLog log;
    FreedesktopDefaultsStore store { log };
};

TEST_F(SessionBus, KeepsThePromises)
{
    contract::defaultsStoreKeepsItsPromises(store);
    EXPECT_EQ(log.lines(), std::vector<std::string>());
}

TEST_F(SessionBus, ReadsEveryTypeThatIsWrittenFromOutside)
{
    struct Row {
        char const* written;
        DefaultsValue value;
    };
    Row const rows[] = {
        { "true", true },
        { "false", false },
        { "'alphabetical'", std::string("alphabetical") },
        { "''", std::string() },
        { "'caf\xC3\xA9'", std::string("caf\xC3\xA9") },
        { "byte 7", 7.0 },
        { "int16 -7", -7.0 },
        { "uint16 65535", 65535.0 },
        { "-2147483648", -2147483648.0 },
        { "uint32 4294967295", 4294967295.0 },
        { "int64 -9007199254740992", -9007199254740992.0 },
        { "uint64 18446744073709551615", 18446744073709551615.0 },
        { "0", 0.0 },
        { "1.5", 1.5 },
        { "['a', 'b']", ForeignValue {} },
        { "@as []", ForeignValue {} },
        { "{'a': 1}", ForeignValue {} },
        { "(1, 'a')", ForeignValue {} },
        { "<true>", ForeignValue {} },
        { "@mb true", ForeignValue {} },
        { "objectpath '/a'", ForeignValue {} },
        { "signature 's'", ForeignValue {} },
        { "handle 1", ForeignValue {} },
        { "b'bytes'", ForeignValue {} },
    };
    for (auto const& row : rows) {
        writeFromOutside("typed", row.written);
        EXPECT_EQ(store.object("typed"), row.value) << row.written;
    }
}

// No event is served in between.
TEST_F(SessionBus, SeesWhatIsWrittenFromOutsideAtOnce)
{
    for (int i = 0; i < 20; ++i) {
        writeFromOutside("counter", std::to_string(i));
        EXPECT_EQ(store.object("counter"), DefaultsValue(static_cast<double>(i)));
    }
    outputOf("dconf reset " + root + "counter");
    EXPECT_EQ(store.object("counter"), std::nullopt);
}

TEST_F(SessionBus, WhatItWritesIsThereForOthersWithItsType)
{
    store.set("truth", true);
    store.set("text", std::string("it's \"\xC3\xA9\""));
    store.set("number", 2.5);
    EXPECT_EQ(outputOf("dconf read " + root + "truth"), "true");
    EXPECT_EQ(outputOf("dconf read " + root + "text"), "\"it's \\\"\xC3\xA9\\\"\"");
    EXPECT_EQ(outputOf("dconf read " + root + "number"), "2.5");
    EXPECT_EQ(outputOf("dconf list " + root), "number\ntext\ntruth");
    EXPECT_EQ(log.lines(), std::vector<std::string>());
}

TEST_F(SessionBus, TheLastWriteWins)
{
    store.set("key", std::string("ours"));
    writeFromOutside("key", "'theirs'");
    EXPECT_EQ(store.object("key"), DefaultsValue(std::string("theirs")));
    store.set("key", std::string("ours again"));
    EXPECT_EQ(store.object("key"), DefaultsValue(std::string("ours again")));
}

TEST_F(SessionBus, AnotherStoreSeesTheSame)
{
    {
        FreedesktopDefaultsStore other(log);
        other.set("shared", 3.0);
    }
    EXPECT_EQ(store.object("shared"), DefaultsValue(3.0));
}

TEST_F(SessionBus, KeysThatTheDatabaseCannotHoldAreAbsentAndNotWritten)
{
    std::string const before = outputOf("dconf dump /");
    for (std::string const& key : { std::string(), std::string("/"), std::string("a/b"), std::string("a/"),
             std::string("/a"), std::string("../escape"), std::string("a\0b", 3), std::string("\xFF") }) {
        store.set(key, true);
        EXPECT_EQ(store.object(key), std::nullopt) << testing::PrintToString(key);
    }
    EXPECT_EQ(outputOf("dconf dump /"), before);
    EXPECT_EQ(log.lines().size(), 1U) << "said once";
}

TEST_F(SessionBus, UnusualKeysAreKept)
{
    for (std::string const& key : { std::string("with space"), std::string("."), std::string("caf\xC3\xA9"),
             std::string("a\nb"), std::string(1000, 'k') }) {
        store.set(key, std::string("value"));
        EXPECT_EQ(store.object(key), DefaultsValue(std::string("value"))) << key;
    }
    EXPECT_EQ(log.lines(), std::vector<std::string>());
}

TEST_F(SessionBus, ValuesThatTheDatabaseCannotHoldChangeNothing)
{
    store.set("key", std::string("before"));
    store.set("key", std::string("broken \xFF"));
    store.set("key", std::string("a\0b", 3));
    store.set("key", ForeignValue {});
    EXPECT_EQ(store.object("key"), DefaultsValue(std::string("before")));
    EXPECT_EQ(log.lines().size(), 1U) << "said once";
}

/// A bus address at which nothing listens.
void leaveTheBus()
{
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
}

TEST(NoBus, ReadingWorksAndAFailedWriteIsSaidOnce)
{
    outputOf("dbus-run-session -- dconf write " + root + "stored 7");
    leaveTheBus();
    FakeLog log;
    FreedesktopDefaultsStore store(log);
    EXPECT_EQ(store.object("stored"), DefaultsValue(7.0));
    EXPECT_EQ(store.object("absent"), std::nullopt);
    store.set("stored", 8.0);
    store.set("other", true);
    EXPECT_EQ(store.object("stored"), DefaultsValue(7.0));
    EXPECT_EQ(store.object("other"), std::nullopt);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(log.lines()[0].starts_with("Marrowick: failed to store the setting \"stored\": ")) << log.lines()[0];
    // The file alone tells what another session writes.
    outputOf("env -u DBUS_SESSION_BUS_ADDRESS dbus-run-session -- dconf write " + root + "stored 9");
    EXPECT_EQ(store.object("stored"), DefaultsValue(9.0));
}

/// A bus that can be stopped in its tracks, so that it takes messages and answers none.
class StoppableBus {
public:
    StoppableBus()
    {
        std::FILE* const output
            = ::popen("dbus-daemon --session --print-address=1 --print-pid=1 --fork --nopidfile", "r");
        char line[1000] = "";
        if (std::fgets(line, sizeof line, output))
            ::setenv("DBUS_SESSION_BUS_ADDRESS", std::string(line, std::string_view(line).find('\n')).c_str(), 1);
        if (std::fgets(line, sizeof line, output))
            process_ = std::atoi(line);
        ::pclose(output);
        EXPECT_GT(process_, 1);
    }
    ~StoppableBus()
    {
        resume();
        send(SIGTERM);
    }
    StoppableBus(StoppableBus const&) = delete;
    StoppableBus& operator=(StoppableBus const&) = delete;

    void stop() const { send(SIGSTOP); }
    void resume() const { send(SIGCONT); }

private:
    /// Only to the bus: zero would stand for this test's own process group.
    void send(int signal) const
    {
        if (process_ > 1)
            ::kill(process_, signal);
    }

    int process_ = 0;
};

TEST(SilentBus, AWriteIsNotWaitedForLongAndTheValueIsSeenMeanwhile)
{
    StoppableBus const bus;
    bus.stop();
    FakeLog log;
    FreedesktopDefaultsStore store(log);

    auto const start = std::chrono::steady_clock::now();
    store.set("first", 1.0);
    store.set("second", 2.0);
    store.set("first", 3.0);
    EXPECT_EQ(store.object("first"), DefaultsValue(3.0));
    EXPECT_EQ(store.object("second"), DefaultsValue(2.0));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 5s) << "only the first write is waited for";
    EXPECT_EQ(log.lines().size(), 1U);

    bus.resume();
    std::string stored;
    for (auto const deadline = std::chrono::steady_clock::now() + 30s;
         stored != "3.0" && std::chrono::steady_clock::now() < deadline; std::this_thread::sleep_for(20ms))
        stored = outputOf("dconf read " + root + "first");
    EXPECT_EQ(stored, "3.0") << "what was left behind is written once the bus answers";
    EXPECT_EQ(outputOf("dconf read " + root + "second"), "2.0");
    EXPECT_EQ(store.object("first"), DefaultsValue(3.0));
}

TEST(SilentBusAtTheEnd, TheStoreEndsThoughAWriteDoesNot)
{
    StoppableBus const bus;
    auto const start = std::chrono::steady_clock::now();
    {
        FakeLog log;
        FreedesktopDefaultsStore store(log);
        bus.stop();
        store.set("key", true);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

TEST(ReplacedBus, IsWrittenToAndTheProcessOutlivesTheFirst)
{
    FakeLog log;
    FreedesktopDefaultsStore store(log);
    {
        StoppableBus const bus;
        store.set("before", true);
        EXPECT_EQ(log.lines(), std::vector<std::string>());
    }
    EXPECT_EQ(store.object("before"), DefaultsValue(true));
    // The library notices a little later that its bus is gone; until then writes fail.
    StoppableBus const bus;
    std::optional<DefaultsValue> stored;
    for (auto const deadline = std::chrono::steady_clock::now() + 30s;
         !stored && std::chrono::steady_clock::now() < deadline; std::this_thread::sleep_for(20ms)) {
        store.set("after", true);
        stored = store.object("after");
    }
    EXPECT_EQ(stored, DefaultsValue(true));
}

TEST(NoRuntimeFolder, ReadingIsSilentInAHomeThatCannotBeWrittenTo)
{
    std::filesystem::path const cache = std::getenv("XDG_CACHE_HOME");
    std::filesystem::remove_all(cache);
    std::ofstream(cache) << "in the way";
    ::unsetenv("XDG_RUNTIME_DIR");
    leaveTheBus();
    FakeLog log;
    testing::internal::CaptureStderr();
    {
        FreedesktopDefaultsStore store(log);
        EXPECT_EQ(store.object("key"), std::nullopt);
        EXPECT_EQ(store.object("other"), std::nullopt);
        store.set("key", true);
        EXPECT_EQ(store.object("key"), std::nullopt);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST(NoPlaceForSettings, AFailedWriteIsSaidOnceAndNothingIsStored)
{
    // A file where the database's folder would be keeps even the superuser from making it.
    std::filesystem::path const configuration = std::getenv("XDG_CONFIG_HOME");
    std::filesystem::create_directories(configuration);
    std::ofstream(configuration / "dconf") << "in the way";
    StoppableBus const bus;
    FakeLog log;
    FreedesktopDefaultsStore store(log);
    EXPECT_EQ(store.object("key"), std::nullopt);
    store.set("key", true);
    store.set("key", false);
    EXPECT_EQ(store.object("key"), std::nullopt);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].find("GDBus"), std::string::npos) << log.lines()[0];
}

}
}
