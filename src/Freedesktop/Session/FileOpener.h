#pragma once

#include "Freedesktop/Session/Launcher.h"
#include "Platform/FileURL.h"

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

private:
    void openDirectory(FileURL const& url);
    void openRegularFile(FileURL const& url);
    bool launchDesktopEntry(std::string const& path);

    Launcher& launcher_;
};

}
