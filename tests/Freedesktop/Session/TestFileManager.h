#pragma once

#include <gio/gio.h>

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace marrowick {

/// A call that reached the service.
struct RecordedCall {
    std::string method;
    std::vector<std::string> uris;
    std::string startupID;
    friend bool operator==(RecordedCall const&, RecordedCall const&) = default;
};

/// A program on the session bus, on a connection and a thread of its own, that has the file manager's interface and
/// the one of applications at every path.
class TestFileManager {
public:
    enum class Behaviour {
        answers,
        refuses,
        keepsSilent,
    };

    explicit TestFileManager(
        Behaviour behaviour = Behaviour::answers, std::string const& name = "org.freedesktop.FileManager1");
    ~TestFileManager();
    TestFileManager(TestFileManager const&) = delete;
    TestFileManager& operator=(TestFileManager const&) = delete;

    std::vector<RecordedCall> calls();

    /// Takes another name.
    void takeName(std::string const& name);
    /// Its connection, as the bus names it.
    std::string connectionName() const;
    /// Answers the question for the property `OpenWindowsWithLocations` with this value, in the notation of `gdbus call`.
    void exportWindows(std::string const& printedValue);

private:
    static GDBusMessage* filter(GDBusConnection* connection, GDBusMessage* message, gboolean incoming, void* self);
    void handle(GDBusConnection* connection, GDBusMessage* message);

    Behaviour behaviour_;
    std::mutex mutex_;
    std::vector<RecordedCall> calls_;
    std::string exportedWindows_;
    GDBusConnection* connection_ = nullptr;
};

/// Calls a method of the bus itself and waits for it.
void callBus(char const* method, GVariant* arguments);

}
