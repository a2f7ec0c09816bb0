#pragma once

#include "Freedesktop/Session/Launcher.h"
#include "Platform/FileURL.h"

#include <string>
#include <vector>

namespace marrowick {

/// Opens a file or folder in the way that its kind asks for:
/// - a desktop entry that is installed or executable starts its application, another one is shown as text;
/// - a directory `Name.app` starts the first executable file of `AppRun`, `Name` and `Contents/Linux/Name` in it;
/// - every other directory is shown by the file manager;
/// - an executable binary is started;
/// - the rest opens in the application that the user chose for its content.
class FileOpener {
public:
    explicit FileOpener(Launcher& launcher)
        : launcher_(launcher)
    {
    }

    void open(FileURL const& url);

    /// Opens `files` with the application at `application`: a desktop entry that may be started, a directory
    /// `Name.app`, an executable binary, or `textEditorPath`, which stands for the user's application for text. Anything
    /// else takes no files.
    void open(std::vector<FileURL> const& files, FileURL const& application);

    static constexpr char textEditorPath[] = "/System/Applications/TextEdit.app";

private:
    void openDirectory(FileURL const& url);
    void openRegularFile(FileURL const& url);
    bool launchDesktopEntry(std::string const& path, std::vector<std::string> const& files);
    void openWithRegularFile(std::vector<std::string> const& files, FileURL const& application);

    Launcher& launcher_;
};

}
