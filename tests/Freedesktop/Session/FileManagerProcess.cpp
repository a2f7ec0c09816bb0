#include "Freedesktop/Session/FileManagerProcess.h"

#include <fcntl.h>
#include <gio/gio.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace marrowick {

namespace {

std::string readLine(std::FILE* file)
{
    std::string line;
    for (int character = std::getc(file); character != EOF && character != '\n'; character = std::getc(file))
        line += static_cast<char>(character);
    return line;
}

}

FileManagerProcess::FileManagerProcess(std::vector<std::string> const& names)
{
    int input[2] {};
    int output[2] {};
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0)
        std::abort();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    auto words = names;
    std::vector<char*> arguments { const_cast<char*>(FILE_MANAGER_PROGRAM) };
    for (auto& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    if (posix_spawn(&pid_, FILE_MANAGER_PROGRAM, &actions, nullptr, arguments.data(), environ) != 0)
        std::abort();
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    input_ = fdopen(input[1], "w");
    output_ = fdopen(output[0], "r");
    if (readLine(output_) != "ready")
        std::abort();
}

FileManagerProcess::~FileManagerProcess()
{
    kill();
    std::fclose(input_);
    std::fclose(output_);
}

std::string FileManagerProcess::perform(std::string const& command)
{
    std::fputs((command + "\n").c_str(), input_);
    std::fflush(input_);
    return readLine(output_);
}

void FileManagerProcess::tell(std::vector<ToldWindow> const& windows)
{
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("a(tsassb)"));
    for (auto const& window : windows) {
        GVariantBuilder selected;
        g_variant_builder_init(&selected, G_VARIANT_TYPE("as"));
        for (auto const& uri : window.selected)
            g_variant_builder_add(&selected, "s", uri.c_str());
        g_variant_builder_add(
            &list, "(tsassb)", window.id, window.folder.c_str(), &selected, "A title", gboolean { window.isActive });
    }
    auto* const value = g_variant_ref_sink(g_variant_new("(a(tsassb))", &list));
    auto* const printed = g_variant_print(value, TRUE);
    if (perform("answer " + std::string(printed)) != "ok")
        std::abort();
    g_free(printed);
    g_variant_unref(value);
}

xcb_window_t FileManagerProcess::open(std::string const& type)
{
    return static_cast<xcb_window_t>(std::stoul(perform("open " + type + " A window")));
}

void FileManagerProcess::signal(int number)
{
    ::kill(pid_, number);
}

void FileManagerProcess::kill()
{
    if (pid_ == 0)
        return;
    signal(SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = 0;
}

}
