#include "Freedesktop/Session/FileManagerStates.h"

#include "Freedesktop/Session/ExportedWindows.h"
#include "Freedesktop/Session/FinderScripts.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace marrowick {

namespace {

constexpr std::string_view companionPrefix = "org.marrowick.FileManager.";
constexpr char companionPath[] = "/org/marrowick/FileManager";
constexpr char companionInterface[] = "org.marrowick.FileManager";
constexpr std::string_view serviceName = "org.freedesktop.FileManager1";
constexpr char servicePath[] = "/org/freedesktop/FileManager1";
constexpr char stateType[] = "(a(tsassb))";

// The numbers that scripts know these errors by.
constexpr int eventTimedOut = -1712;
constexpr int eventFailed = -10000;

constexpr std::size_t maximumMessageBytes = 500;

/// Calls have no time limit of their own, so that a late answer still arrives.
constexpr int noTimeout = G_MAXINT;

std::string shortened(std::string text)
{
    if (text.size() <= maximumMessageBytes)
        return text;
    auto end = maximumMessageBytes;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    text.resize(end);
    return text + "…";
}

/// Whether the other side went away, or was gone already.
bool meansAbsence(GError const& error)
{
    auto const is = [&](GDBusError code) { return g_error_matches(&error, G_DBUS_ERROR, code); };
    return !g_dbus_error_is_remote_error(&error) || is(G_DBUS_ERROR_SERVICE_UNKNOWN)
        || is(G_DBUS_ERROR_NAME_HAS_NO_OWNER) || is(G_DBUS_ERROR_NO_REPLY) || is(G_DBUS_ERROR_DISCONNECTED);
}

std::string messageOf(GError const& error)
{
    GErrorOwner const copy(g_error_copy(&error));
    g_dbus_error_strip_remote_error(copy.get());
    return shortened(copy->message);
}

/// The names of companions, and last that of the desktop's file manager where it is there.
std::vector<std::string> askableNames(GVariant* answer)
{
    GVariantOwner const list(g_variant_get_child_value(answer, 0));
    std::vector<std::string> names;
    GVariantIter iterator;
    g_variant_iter_init(&iterator, list.get());
    char const* name = nullptr;
    bool hasService = false;
    while (g_variant_iter_next(&iterator, "&s", &name)) {
        if (std::string_view(name).starts_with(companionPrefix))
            names.emplace_back(name);
        hasService = hasService || name == serviceName;
    }
    std::sort(names.begin(), names.end());
    if (hasService)
        names.emplace_back(serviceName);
    return names;
}

void appendWindows(FileManagerWindows& windows, GVariant* answer)
{
    GVariantOwner const list(g_variant_get_child_value(answer, 0));
    GVariantIter iterator;
    g_variant_iter_init(&iterator, list.get());
    guint64 id = 0;
    char const* folder = nullptr;
    GVariant* selected = nullptr;
    gboolean isActive = FALSE;
    while (g_variant_iter_next(&iterator, "(t&s@as&sb)", &id, &folder, &selected, nullptr, &isActive)) {
        // An X server's windows have 32 bits.
        constexpr xcb_window_t none = XCB_WINDOW_NONE;
        windows.push_back({
            .id = id <= G_MAXUINT32 ? static_cast<xcb_window_t>(id) : none,
            .isActive = isActive != FALSE,
            .folderURI = folder,
            .selectedURIs = GVariantOwner(selected),
        });
    }
}

}

/// The calls of one moment and what has come of them.
struct FileManagerStates::Round {
    std::vector<Reply> replies;
    std::size_t missing = 0;
    bool isOver = false;
};

FileManagerStates::FileManagerStates(std::chrono::milliseconds probeInterval)
    : probeInterval_(probeInterval)
{
}

FileManagerStates::Reply FileManagerStates::replyOf(GVariant* answer, GError const* error)
{
    if (answer)
        return { Outcome::answered, GVariantOwner(g_variant_ref(answer)), {} };
    if (meansAbsence(*error))
        return { Outcome::absent, {}, {} };
    return { Outcome::failed, {}, messageOf(*error) };
}

ScriptFailure FileManagerStates::failureOf(Reply const& reply)
{
    if (reply.outcome == Outcome::missing)
        return { errorDictionary("Finder got an error: AppleEvent timed out.", eventTimedOut) };
    return { errorDictionary("Finder got an error: " + reply.message, eventFailed) };
}

BusCall FileManagerStates::callToBus(char const* method, GVariant* arguments)
{
    return { "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments, noTimeout };
}

std::vector<FileManagerStates::Reply> FileManagerStates::callAll(std::vector<BusCall> calls, Clock::time_point deadline)
{
    auto const round = std::make_shared<Round>();
    round->replies.resize(calls.size());
    std::vector<std::string> destinations;
    for (auto& call : calls) {
        auto const index = destinations.size();
        auto const& destination = destinations.emplace_back(call.destination);
        if (silent_.contains(destination)) {
            round->replies[index].outcome = Outcome::absent;
            probe(std::move(call));
            continue;
        }
        ++round->missing;
        bus_.call(std::move(call), [this, round, index, destination](GVariant* answer, GError const* error) {
            silent_.erase(destination);
            if (round->isOver)
                return;
            round->replies[index] = replyOf(answer, error);
            --round->missing;
        });
    }
    context_.serveUntil([&] { return round->missing == 0; }, deadline);
    round->isOver = true;
    for (std::size_t i = 0; i < destinations.size(); ++i) {
        if (round->replies[i].outcome == Outcome::missing)
            silent_[destinations[i]] = Clock::now() + probeInterval_;
    }
    return std::move(round->replies);
}

void FileManagerStates::probe(BusCall call)
{
    auto& nextTime = silent_[call.destination];
    if (Clock::now() < nextTime) {
        if (call.arguments)
            g_variant_unref(g_variant_ref_sink(call.arguments));
        return;
    }
    nextTime = Clock::now() + probeInterval_;
    auto const destination = call.destination;
    bus_.call(std::move(call), [this, destination](GVariant*, GError const*) { silent_.erase(destination); });
}

FileManagerStates::Askable FileManagerStates::findAskable(Clock::time_point deadline)
{
    Askable askable;
    auto const lists = callAll({ callToBus("ListNames", nullptr) }, deadline);
    auto const& list = lists.front();
    if (list.outcome != Outcome::answered || !g_variant_is_of_type(list.answer.get(), G_VARIANT_TYPE("(as)")))
        return askable;
    auto const names = askableNames(list.answer.get());
    std::vector<BusCall> calls;
    calls.reserve(names.size());
    for (auto const& name : names)
        calls.push_back(callToBus("GetNameOwner", g_variant_new("(s)", name.c_str())));
    auto const replies = callAll(std::move(calls), deadline);
    // What the bus itself has used up is not held against the companions.
    if (Clock::now() >= deadline)
        return askable;
    auto& companions = askable.companions;
    for (std::size_t i = 0; i < names.size(); ++i) {
        auto const& reply = replies[i];
        if (reply.outcome != Outcome::answered || !g_variant_is_of_type(reply.answer.get(), G_VARIANT_TYPE("(s)")))
            continue;
        char const* owner = nullptr;
        g_variant_get(reply.answer.get(), "(&s)", &owner);
        if (std::find(companions.begin(), companions.end(), owner) != companions.end())
            continue;
        if (names[i] == serviceName)
            askable.service = owner;
        else
            companions.emplace_back(owner);
    }
    return askable;
}

std::variant<FileManagerWindows, ScriptFailure> FileManagerStates::ask()
{
    if (!SessionBus::isAvailable())
        return FileManagerWindows {};
    context_.serveArrived();
    auto const deadline = Clock::now() + patience;
    auto const askable = findAskable(deadline);
    std::vector<BusCall> calls;
    for (auto const& companion : askable.companions)
        calls.push_back({ companion, companionPath, companionInterface, "GetState", nullptr, noTimeout });
    if (!askable.service.empty())
        calls.push_back({ askable.service, servicePath, "org.freedesktop.DBus.Properties", "Get",
            g_variant_new("(ss)", serviceName.data(), "OpenWindowsWithLocations"), noTimeout });

    auto replies = callAll(std::move(calls), deadline);
    FileManagerWindows windows;
    Reply exported;
    if (!askable.service.empty()) {
        exported = std::move(replies.back());
        replies.pop_back();
    }
    std::optional<ScriptFailure> failure;
    for (auto& reply : replies) {
        bool const isAnswer = reply.outcome == Outcome::answered;
        if (isAnswer && g_variant_is_of_type(reply.answer.get(), G_VARIANT_TYPE(stateType))) {
            appendWindows(windows, reply.answer.get());
            continue;
        }
        if (isAnswer)
            reply.message = "its state is not of the type " + std::string(stateType) + ".";
        if (reply.outcome != Outcome::absent && !failure)
            failure = failureOf(reply);
    }
    // Most file managers have no such property, which is no failure.
    if (exported.outcome == Outcome::answered)
        appendExportedWindows(windows, exported.answer.get(), askable.service);
    if (windows.empty() && failure)
        return std::move(*failure);
    return windows;
}

}
