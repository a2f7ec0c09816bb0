#include "Freedesktop/Files/StandardDirectories.h"

#include "Freedesktop/Files/RegularFile.h"

#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace marrowick {

namespace {

constexpr std::size_t largestSettingsFile = 1 << 16;

/// The variable's value where it is an absolute path; the base directory rules tell programs to ignore any other.
std::optional<std::string> absolutePathInEnvironment(char const* variable)
{
    char const* const value = std::getenv(variable);
    if (!value || value[0] != '/')
        return std::nullopt;
    return value;
}

std::optional<std::string> homeInUserDatabase()
{
    std::vector<char> buffer(16 * 1024);
    passwd entry {};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found || !found->pw_dir
        || found->pw_dir[0] != '/')
        return std::nullopt;
    return found->pw_dir;
}

std::string_view withoutLeadingBlanks(std::string_view text)
{
    auto const start = text.find_first_not_of(" \t");
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

/// Takes `expected` and the blanks before it off the start of `text`.
bool skip(std::string_view& text, std::string_view expected)
{
    auto const rest = withoutLeadingBlanks(text);
    if (!rest.starts_with(expected))
        return false;
    text = rest.substr(expected.size());
    return true;
}

/// The path in a line `KEY="$HOME/path"` or `KEY="/path"`, in which a backslash makes the next byte literal.
std::optional<std::string> pathInLine(std::string_view line, std::string_view key, std::string const& home)
{
    if (!skip(line, key) || !skip(line, "=") || !skip(line, "\""))
        return std::nullopt;
    std::string path;
    if (line.starts_with("$HOME")) {
        line.remove_prefix(5);
        if (!line.starts_with('/') && !line.starts_with('"'))
            return std::nullopt;
        path = home;
    } else if (!line.starts_with('/')) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size())
            ++i;
        path += line[i];
    }
    return FileURL(path).path();
}

std::string userDirectoryOrDefault(char const* key, char const* defaultName)
{
    auto const home = homePath();
    auto const configuration = absolutePathInEnvironment("XDG_CONFIG_HOME").value_or(home + "/.config");
    auto const file = configuration + "/user-dirs.dirs";
    auto const settings = readRegularFile(AT_FDCWD, file.c_str(), largestSettingsFile);
    if (auto const* text = std::get_if<std::string>(&settings)) {
        if (auto path = userDirectory(*text, key, home))
            return *std::move(path);
    }
    return FileURL(home).appendingPathComponent(defaultName).path();
}

}

std::optional<std::string> userDirectory(std::string_view settings, std::string_view key, std::string const& home)
{
    std::optional<std::string> found;
    while (!settings.empty()) {
        auto const line = settings.substr(0, settings.find('\n'));
        settings.remove_prefix(std::min(line.size() + 1, settings.size()));
        if (auto path = pathInLine(line, key, home))
            found = std::move(path);
    }
    if (found == FileURL(home).path())
        return std::nullopt;
    return found;
}

std::string homePath()
{
    if (auto path = absolutePathInEnvironment("HOME"))
        return *std::move(path);
    return homeInUserDatabase().value_or("/");
}

std::string standardDirectoryPath(StandardDirectory directory)
{
    switch (directory) {
    case StandardDirectory::applicationSupport:
        return absolutePathInEnvironment("XDG_DATA_HOME").value_or(homePath() + "/.local/share");
    case StandardDirectory::desktop:
        return userDirectoryOrDefault("XDG_DESKTOP_DIR", "Desktop");
    case StandardDirectory::documents:
        return userDirectoryOrDefault("XDG_DOCUMENTS_DIR", "Documents");
    case StandardDirectory::downloads:
        break;
    }
    return userDirectoryOrDefault("XDG_DOWNLOAD_DIR", "Downloads");
}

}
