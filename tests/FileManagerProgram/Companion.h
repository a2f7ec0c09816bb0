#pragma once

#include <gio/gio.h>

#include <string>
#include <vector>

/// The file manager's companion on the session bus. Its methods are called, and calls reach it, on the main thread.
class Companion {
public:
    /// Has the names when it returns, or ends the program.
    explicit Companion(std::vector<std::string> const& names);
    ~Companion();
    Companion(Companion const&) = delete;
    Companion& operator=(Companion const&) = delete;

    /// Answers with this value from here on, of whatever type it is; false where the text is none.
    bool answer(std::string const& printedValue);
    void fail(std::string const& message);
    /// Keeps what is asked without an answer.
    void keepSilent();
    void waitBeforeAnswers(unsigned int milliseconds) { delay_ = milliseconds; }
    /// Answers what was kept, as it answers at this moment.
    void release();
    /// How many questions came.
    unsigned int count() const { return count_; }

private:
    static GDBusMessage* filter(GDBusConnection* connection, GDBusMessage* message, gboolean incoming, void* self);
    static gboolean takeFromFilter(void* data);
    void handle(GDBusMessage* question);
    void reply(GDBusMessage* question);

    GDBusConnection* connection_;
    GVariant* value_ = nullptr;
    std::string failure_;
    bool isSilent_ = false;
    unsigned int delay_ = 0;
    unsigned int count_ = 0;
    std::vector<GDBusMessage*> kept_;
};
