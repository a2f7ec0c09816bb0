#include "InstalledCrowd.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace marrowick::benchmarks {

namespace {

namespace filesystem = std::filesystem;

/// Names that every complete icon theme has.
constexpr std::array iconNames { "accessories-calculator", "accessories-text-editor", "audio-x-generic",
    "applications-games", "applications-graphics", "applications-internet", "applications-multimedia",
    "applications-office", "applications-system", "applications-utilities", "camera-photo", "computer",
    "drive-harddisk", "drive-optical", "folder", "help-browser", "image-x-generic", "input-gaming", "input-keyboard",
    "input-mouse", "network-server", "network-workgroup", "package-x-generic", "preferences-desktop",
    "preferences-desktop-font", "preferences-system", "printer", "system-file-manager", "text-html", "text-x-generic",
    "user-desktop", "user-home", "user-trash", "utilities-system-monitor", "utilities-terminal", "video-display",
    "video-x-generic", "web-browser", "x-office-calendar", "x-office-document" };

constexpr std::array languages { "ar", "ca", "cs", "da", "de", "el", "es", "fi", "fr", "gl", "he", "hu", "id", "it",
    "ja", "ko", "lt", "nb", "nl", "pl", "pt", "pt_BR", "ro", "ru", "sk", "sl", "sr", "sv", "tr", "uk", "vi", "zh_CN" };

/// A file of some 5 kB, as those of applications with translations are.
std::string entryOf(InstalledCrowd::Application const& application)
{
    std::string text = "[Desktop Entry]\nType=Application\nVersion=1.0\nName=" + application.name + "\n";
    for (auto const* key : { "Name", "Comment", "Keywords" }) {
        for (auto const* language : languages)
            text += std::string(key) + "[" + language + "]=" + application.name + " in words of " + language + ";\n";
    }
    return text + "Exec=true %U\nTryExec=true\nIcon=" + application.iconName + "\nStartupWMClass=" + application.wmClass
        + "\nTerminal=false\nStartupNotify=true\nCategories=GTK;Utility;\nMimeType=text/plain;text/html;\n";
}

}

InstalledCrowd::InstalledCrowd(std::size_t count)
{
    auto pattern = (filesystem::temp_directory_path() / "marrowick-benchmark-XXXXXX").string();
    path_ = mkdtemp(pattern.data()) ? pattern : std::string();
    filesystem::create_directories(path_ + "/home/applications");
    filesystem::create_directories(path_ + "/system");
    for (auto const* name : { "icons", "mime", "themes" }) {
        if (auto const folder = filesystem::path("/usr/share") / name; filesystem::exists(folder))
            filesystem::create_directory_symlink(folder, filesystem::path(path_) / "system" / name);
    }
    setenv("XDG_DATA_HOME", (path_ + "/home").c_str(), 1);
    setenv("XDG_DATA_DIRS", (path_ + "/system").c_str(), 1);
    for (std::size_t i = 0; i < count; ++i) {
        auto const number = std::to_string(i);
        applications_.push_back({ "Application " + number, iconNames[i % iconNames.size()], "Crowd" + number });
        std::ofstream(path_ + "/home/applications/org.example.Crowd" + number + ".desktop")
            << entryOf(applications_.back());
    }
}

InstalledCrowd::~InstalledCrowd()
{
    std::error_code ignored;
    if (!path_.empty())
        filesystem::remove_all(path_, ignored);
}

}
