#include "Freedesktop/Session/FileOpener.h"

#include "Freedesktop/Session/DesktopEntries.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

namespace {

constexpr char plainText[] = "text/plain";
constexpr char emptyFile[] = "application/x-zerosize";
constexpr char directoryType[] = "inode/directory";

bool isExecutableFile(std::string const& path)
{
    struct stat status { };
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
}

/// The bytes that tell a file's content; empty where it is no regular file or cannot be read.
std::string beginningOf(std::string const& path)
{
    std::array<char, 4096> bytes {};
    int const file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0)
        return {};
    struct stat status { };
    ssize_t length = 0;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode))
        length = read(file, bytes.data(), bytes.size());
    close(file);
    return { bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)) };
}

std::string contentTypeOf(std::string const& path, std::string const& beginning)
{
    GStringOwner const type(g_content_type_guess(
        path.c_str(), reinterpret_cast<guchar const*>(beginning.data()), beginning.size(), nullptr));
    return type ? std::string(type.get()) : std::string();
}

/// Where the item is once links are followed; `url` itself where that cannot be told.
FileURL resolved(FileURL const& url)
{
    std::unique_ptr<char, decltype(&std::free)> const path(realpath(url.path().c_str(), nullptr), &std::free);
    return path ? FileURL(path.get(), url.hasDirectoryPath()) : url;
}

bool isDesktopEntry(FileURL const& url)
{
    return url.pathExtension() == "desktop" || resolved(url).pathExtension() == "desktop";
}

bool isProgram(std::string const& path, std::string const& beginning)
{
    return beginning.starts_with("\177ELF") && isExecutableFile(path);
}

/// The program of a directory `Name.app`, links followed; absent for other directories too.
std::optional<std::string> programOfDirectory(FileURL const& url)
{
    auto const directory = resolved(url);
    if (directory.pathExtension() != "app")
        return std::nullopt;
    auto const name = directory.nameWithoutExtension();
    std::array const candidates { directory.appendingPathComponent("AppRun"), directory.appendingPathComponent(name),
        directory.appendingPathComponent("Contents/Linux").appendingPathComponent(name) };
    for (auto const& candidate : candidates) {
        if (isExecutableFile(candidate.path()))
            return candidate.path();
    }
    return std::nullopt;
}

}

void FileOpener::open(FileURL const& url)
{
    struct stat status { };
    if (!url.path().starts_with('/') || stat(url.path().c_str(), &status) != 0)
        return;
    if (S_ISDIR(status.st_mode))
        openDirectory(url);
    else if (S_ISREG(status.st_mode))
        openRegularFile(url);
}

void FileOpener::openDirectory(FileURL const& url)
{
    if (auto const program = programOfDirectory(url))
        launcher_.startProgram(*program);
    else
        launcher_.openInDefaultApplication(directoryType, { url.path() });
}

void FileOpener::openRegularFile(FileURL const& url)
{
    auto const& path = url.path();
    if (isDesktopEntry(url)) {
        if (!launchDesktopEntry(path, {}))
            launcher_.openInDefaultApplication(plainText, { path });
        return;
    }
    auto const beginning = beginningOf(path);
    if (isProgram(path, beginning)) {
        launcher_.startProgram(path);
        return;
    }
    auto const type = contentTypeOf(path, beginning);
    if (!launcher_.openInDefaultApplication(type.c_str(), { path }) && type == emptyFile)
        launcher_.openInDefaultApplication(plainText, { path });
}

bool FileOpener::launchDesktopEntry(std::string const& path, std::vector<std::string> const& files)
{
    if (!isExecutableFile(path) && !liesInApplicationsFolder(path, applicationsFolders()))
        return false;
    GObjectOwner<GDesktopAppInfo> const application(g_desktop_app_info_new_from_filename(path.c_str()));
    if (!application)
        return false;
    launcher_.launch(application.get(), files);
    return true;
}

void FileOpener::open(std::vector<FileURL> const& files, FileURL const& application)
{
    std::vector<std::string> paths;
    for (auto const& file : files) {
        if (file.path().starts_with('/'))
            paths.push_back(file.path());
    }
    if (paths.empty())
        return;
    if (application.path() == textEditorPath) {
        launcher_.openInDefaultApplication(plainText, paths);
        return;
    }
    struct stat status { };
    if (!application.path().starts_with('/') || stat(application.path().c_str(), &status) != 0)
        return;
    if (S_ISREG(status.st_mode)) {
        openWithRegularFile(paths, application);
    } else if (S_ISDIR(status.st_mode)) {
        if (auto const program = programOfDirectory(application))
            launcher_.startProgram(*program, paths);
    }
}

void FileOpener::openWithRegularFile(std::vector<std::string> const& files, FileURL const& application)
{
    auto const& path = application.path();
    if (isDesktopEntry(application)) {
        // As where it is opened by itself: what may not be started is shown instead.
        if (!launchDesktopEntry(path, files))
            launcher_.openInDefaultApplication(plainText, { path });
    } else if (isProgram(path, beginningOf(path))) {
        launcher_.startProgram(path, files);
    }
}

}
