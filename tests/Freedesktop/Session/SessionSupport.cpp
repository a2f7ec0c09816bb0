#include "Freedesktop/Session/SessionSupport.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <utility>

namespace marrowick {

namespace {

pid_t spawn(std::vector<std::string>& command)
{
    std::vector<char*> words;
    for (auto& word : command)
        words.push_back(word.data());
    words.push_back(nullptr);
    pid_t pid = 0;
    return posix_spawnp(&pid, words[0], nullptr, nullptr, words.data(), environ) == 0 ? pid : 0;
}

/// Not shown to the user: one that still ends is no application that runs.
void installHandler(std::string const& id, std::string const& exec)
{
    writeFile(environmentVariable("XDG_DATA_HOME") + "/applications/" + id + ".desktop",
        "[Desktop Entry]\nType=Application\nNoDisplay=true\nName=" + id + "\nExec=" + exec + "\n");
}

/// The texts of a file, each ended by NUL; absent where there is none.
std::optional<std::vector<std::string>> textsIn(std::filesystem::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return std::nullopt;
    std::vector<std::string> texts;
    for (std::string text; std::getline(file, text, '\0');)
        texts.push_back(text);
    return texts;
}

Handlers makeHandlers()
{
    auto const home = environmentVariable("HOME");
    Handlers made { Recorder(home + "/handlers/text"), Recorder(home + "/handlers/folder"),
        Recorder(home + "/handlers/picture") };
    installHandler("test-text", made.text.path() + " %f");
    installHandler("test-folder", made.folder.path());
    installHandler("test-picture", made.picture.path() + " -- %U");
    writeFile(environmentVariable("XDG_CONFIG_HOME") + "/mimeapps.list",
        "[Default Applications]\ntext/plain=test-text.desktop\ninode/directory=test-folder.desktop\n"
        "image/png=test-picture.desktop\n");
    return made;
}

}

bool waitFor(std::function<bool()> const& condition, std::chrono::milliseconds limit)
{
    auto const deadline = std::chrono::steady_clock::now() + limit;
    // Keeps the loop turning where nothing else happens.
    QTimer pulse;
    pulse.start(5);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

std::string environmentVariable(char const* name)
{
    char const* const value = std::getenv(name);
    return value ? value : "";
}

void writeFile(std::string const& path, std::string const& content, mode_t mode)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << content;
    chmod(path.c_str(), mode);
}

StartedProgram::StartedProgram(std::vector<std::string> command)
    : pid_(spawn(command))
{
}

void StartedProgram::end(int signal)
{
    if (pid_ == 0)
        return;
    kill(pid_, signal ? signal : SIGTERM);
    waitpid(pid_, nullptr, 0);
    pid_ = 0;
}

int runProgram(std::vector<std::string> command)
{
    auto const pid = spawn(command);
    int status = 0;
    if (pid == 0 || waitpid(pid, &status, 0) != pid || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

Recorder::Recorder(std::string path)
    : path_(std::move(path))
{
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path());
    std::filesystem::copy_file(RECORDING_PROGRAM, path_, std::filesystem::copy_options::overwrite_existing);
    forget();
}

std::optional<std::vector<std::string>> Recorder::arguments() const
{
    return textsIn(path_ + ".record");
}

std::vector<std::string> Recorder::environment() const
{
    return textsIn(path_ + ".environment").value_or(std::vector<std::string>());
}

std::vector<std::vector<std::string>> Recorder::waitForStarts(std::size_t count)
{
    auto const folder = path_ + ".starts";
    auto const number = [&] {
        std::error_code error;
        auto const starts = std::filesystem::directory_iterator(folder, error);
        return error ? 0 : static_cast<std::size_t>(std::distance(begin(starts), end(starts)));
    };
    waitFor([&] { return number() >= count; });
    std::vector<std::vector<std::string>> starts;
    std::error_code error;
    for (auto const& start : std::filesystem::directory_iterator(folder, error))
        starts.push_back(textsIn(start.path()).value_or(std::vector<std::string>()));
    forget();
    return starts;
}

std::optional<std::vector<std::string>> Recorder::waitForStart()
{
    if (!waitFor([&] { return arguments().has_value(); }))
        return std::nullopt;
    auto const found = arguments();
    std::filesystem::remove(path_ + ".record");
    std::filesystem::remove_all(path_ + ".starts");
    return found;
}

std::map<std::string, std::string> Recorder::facts() const
{
    std::map<std::string, std::string> facts;
    std::ifstream file(path_ + ".facts");
    for (std::string line; std::getline(file, line);) {
        auto const space = line.find(' ');
        facts[line.substr(0, space)] = line.substr(space + 1);
    }
    return facts;
}

void Recorder::forget() const
{
    std::filesystem::remove(path_ + ".record");
    std::filesystem::remove(path_ + ".facts");
    std::filesystem::remove(path_ + ".environment");
    std::filesystem::remove_all(path_ + ".starts");
}

Handlers& handlers()
{
    static Handlers made = makeHandlers();
    return made;
}

}
