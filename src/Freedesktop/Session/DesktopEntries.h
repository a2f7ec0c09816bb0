#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace marrowick {

/// The file of an application that is installed on the desktop.
struct DesktopEntry {
    /// The desktop file ID without its ".desktop".
    std::string id;
    std::string path;
    std::string startupWMClass;
    /// The line that starts the application, as it stands in the file.
    std::string commandLine;
    /// The words of `Categories`, as they stand in the file.
    std::string categories;
    /// False where the entry itself asks not to be shown; desktops may have more to say.
    bool isVisible = true;
};

/// The folders that hold desktop entries, those that take precedence first.
std::vector<std::string> applicationsFolders();

/// Whether the item at `path` lies in one of `folders` or below, also by way of links.
bool liesInApplicationsFolder(std::string const& path, std::vector<std::string> const& folders);

/// The desktop entries of some applications folders, found by what a window tells about itself. What it returns is
/// valid until the next `refresh`.
class DesktopEntries {
public:
    explicit DesktopEntries(std::vector<std::string> folders = applicationsFolders());

    /// Reads the folders anew where anything in them has changed since.
    void refresh();

    /// All that take no precedence from each other; those whose `path` is empty say that there is no such application.
    std::vector<DesktopEntry> const& all() const { return entries_; }

    /// Another number after everything was read anew.
    unsigned int generation() const { return generation_; }

    DesktopEntry const* withStartupWMClass(std::string_view wmClass) const;
    DesktopEntry const* withID(std::string_view id) const;
    /// By the name of the program's file; only where this program belongs to a single visible entry and is started
    /// without a word that could name another (a script of an interpreter).
    DesktopEntry const* withExecutable(std::string_view path) const;

    /// The name in the user's language; absent where the entry names a program that is not installed.
    std::optional<std::string> localizedName(DesktopEntry const& entry) const;

private:
    /// What tells a file or folder that was read from what stands there later.
    struct Stamp {
        std::string path;
        bool exists = false;
        struct stat status { };
    };
    using Index = std::unordered_map<std::string, std::size_t>;

    static Stamp stampOf(std::string path);
    bool isUnchanged() const;
    void read();
    void readFolder(std::string const& path, std::string const& idPrefix, int depth);
    void readEntry(std::string const& path, std::string id);
    void buildIndexes();
    DesktopEntry const* find(Index const& index, std::string_view key) const;

    std::vector<std::string> folders_;
    std::vector<Stamp> stamps_;
    bool stampsAreTrusted_ = false;
    unsigned int generation_ = 0;
    std::vector<DesktopEntry> entries_;
    Index byID_;
    Index byWMClass_;
    Index byExecutable_;
    mutable std::unordered_map<std::string, std::optional<std::string>> names_;
};

}
