/// Plays a file manager and its companion.
///
///     test-file-manager NAME...
///
/// takes these names on the session bus and says "ready". Each line of standard input is a command; it is answered by a
/// line on standard output, "ok" where there is nothing to say. The end of the input ends the program.
///
///     answer VALUE              answers questions with this tuple, in the notation of `gdbus call`
///     fail TEXT                 answers them with an error
///     silent                    keeps them without an answer
///     delay MILLISECONDS        waits before each answer
///     release                   answers what was kept
///     count                     says how many questions came
///     open TYPE TITLE           shows a window of the type NORMAL or DESKTOP, and says its number
///     raise, minimise, close NUMBER
///     workspace NUMBER INDEX    moves a window to another workspace
///     die                       ends at once, without a goodbye

#include "FileManagerProgram/Companion.h"
#include "FileManagerProgram/Windows.h"

#include <glib.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

class Program {
public:
    explicit Program(std::vector<std::string> const& names)
        : companion_(names)
    {
    }

    std::string perform(std::string const& line)
    {
        std::istringstream words(line);
        std::string command;
        words >> command;
        auto const number = [&] {
            unsigned long value = 0;
            words >> value;
            return static_cast<std::uint32_t>(value);
        };
        auto const rest = [&] {
            std::string text;
            std::getline(words >> std::ws, text);
            return text;
        };
        if (command == "answer")
            return companion_.answer(rest()) ? "ok" : "no value";
        if (command == "count")
            return std::to_string(companion_.count());
        if (command == "open") {
            std::string type;
            words >> type;
            return std::to_string(windows_.open(rest(), type));
        }
        if (command == "fail") {
            companion_.fail(rest());
        } else if (command == "silent") {
            companion_.keepSilent();
        } else if (command == "delay") {
            companion_.waitBeforeAnswers(number());
        } else if (command == "release") {
            companion_.release();
        } else if (command == "raise") {
            windows_.raise(number());
        } else if (command == "minimise") {
            windows_.minimise(number());
        } else if (command == "close") {
            windows_.close(number());
        } else if (command == "workspace") {
            auto const window = number();
            windows_.moveToWorkspace(window, number());
        } else if (command == "die") {
            _exit(1);
        } else {
            return "unknown command";
        }
        return "ok";
    }

private:
    Windows windows_;
    Companion companion_;
};

struct Session {
    Program& program;
    GMainLoop* loop;
};

gboolean readLine(GIOChannel* channel, GIOCondition, void* data)
{
    auto& session = *static_cast<Session*>(data);
    char* text = nullptr;
    gsize end = 0;
    if (g_io_channel_read_line(channel, &text, nullptr, &end, nullptr) != G_IO_STATUS_NORMAL) {
        g_main_loop_quit(session.loop);
        return G_SOURCE_REMOVE;
    }
    std::string const line(text, end);
    g_free(text);
    std::cout << session.program.perform(line) << std::endl;
    // What is buffered already does not wake the loop again.
    return g_io_channel_get_buffer_condition(channel) & G_IO_IN ? readLine(channel, G_IO_IN, data) : G_SOURCE_CONTINUE;
}

}

int main(int argc, char** argv)
{
    std::vector<std::string> const names(argv + 1, argv + argc);
    Program program(names);
    auto* const loop = g_main_loop_new(nullptr, FALSE);
    auto* const input = g_io_channel_unix_new(STDIN_FILENO);
    g_io_channel_set_encoding(input, nullptr, nullptr);
    Session session { program, loop };
    g_io_add_watch(input, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), readLine, &session);
    std::cout << "ready" << std::endl;
    g_main_loop_run(loop);
    g_io_channel_unref(input);
    g_main_loop_unref(loop);
}
