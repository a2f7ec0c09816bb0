#pragma once

#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Session/PrivateContext.h"
#include "Freedesktop/Session/SessionBus.h"
#include "Platform/ScriptingBridge.h"

#include <xcb/xcb.h>

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace marrowick {

/// A window as a file manager without a companion tells it, by the desktop's common interface.
struct ExportedWindow {
    /// Where it is on the bus.
    std::string connection;
    std::string objectPath;
    /// What its tabs show, in no particular order.
    std::vector<std::string> folderURIs;
};

/// A window of a file manager, as the file manager tells it.
struct FileManagerWindow {
    /// None where the file manager does not know it.
    xcb_window_t id = XCB_WINDOW_NONE;
    bool isActive = false;
    std::string folderURI;
    /// A list of strings in the file manager's order; null where nothing is told of a selection.
    GVariantOwner selectedURIs;
    /// Then what the folder and the number can be found from.
    std::optional<ExportedWindow> exported = std::nullopt;
};

using FileManagerWindows = std::vector<FileManagerWindow>;

/// Asks every file manager that has a companion on the session bus for its windows, and the desktop's file manager, where
/// it has none, for what it exports.
///
/// One that does not answer in time is left alone until an answer of it has arrived after all, which the next question
/// notices. Should it have lost what it was asked, it is asked again from time to time without anyone waiting. It is
/// known by its connection, so a restarted one begins anew.
class FileManagerStates {
public:
    using Clock = PrivateContext::Clock;

    /// How long all of a question may take.
    static constexpr std::chrono::milliseconds patience { 300 };
    /// How often one that keeps silent is asked in the background.
    static constexpr std::chrono::milliseconds ordinaryProbeInterval { 10'000 };

    explicit FileManagerStates(std::chrono::milliseconds probeInterval = ordinaryProbeInterval);

    /// The windows of all file managers that answer, those of one in its own order. A failure only where there are no
    /// windows and a file manager failed, or let the time pass; one that keeps silent since an earlier question counts
    /// as absent. Waits, and serves no events of the program meanwhile.
    std::variant<FileManagerWindows, ScriptFailure> ask();

private:
    enum class Outcome {
        missing,
        absent,
        failed,
        answered,
    };
    struct Reply {
        Outcome outcome = Outcome::missing;
        GVariantOwner answer;
        std::string message;
    };
    struct Round;

    static Reply replyOf(GVariant* answer, GError const* error);
    static ScriptFailure failureOf(Reply const& reply);
    static BusCall callToBus(char const* method, GVariant* arguments);

    /// Makes all calls at once and returns what came of each in time.
    std::vector<Reply> callAll(std::vector<BusCall> calls, Clock::time_point deadline);
    /// Makes a call to one that keeps silent, when it is time to.
    void probe(BusCall call);
    /// The connections to ask, each once.
    struct Askable {
        std::vector<std::string> companions;
        /// That of the desktop's file manager where it has no companion, else empty.
        std::string service;
    };
    Askable findAskable(Clock::time_point deadline);

    std::chrono::milliseconds probeInterval_;
    /// Outlives the bus, which ends its calls in it.
    PrivateContext context_;
    SessionBus bus_ { context_.get() };
    /// The connections that keep silent, and when each may be asked again in the background.
    std::map<std::string, Clock::time_point> silent_;
};

}
