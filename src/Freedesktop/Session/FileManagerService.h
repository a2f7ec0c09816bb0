#pragma once

#include "Freedesktop/Session/SessionBus.h"
#include "Platform/FileURL.h"

#include <functional>
#include <string>
#include <vector>

namespace marrowick {

/// The file manager that the user runs, or that the session can start, as the desktop's common interface shows it.
class FileManagerService {
public:
    /// Shows each of `urls` selected in its folder. `notShown` gets those for which there is no file manager, or whose
    /// request it refused; maybe at once.
    void showItems(
        std::vector<FileURL> const& urls, std::string const& startupID, std::function<void(FileURL const&)> notShown);

    /// Opens the window with the properties of `url`, where there is a file manager that can.
    void showItemProperties(FileURL const& url, std::string const& startupID);

private:
    enum class Availability {
        absent,
        running,
        startable,
    };

    void findOut(std::function<void(Availability)> then);
    void findOutWhetherStartable(std::function<void(Availability)> then);
    /// `refused` is called where it is certain that the request was not, and will not be, followed.
    void request(char const* method, FileURL const& url, std::string const& startupID, Availability availability,
        std::function<void()> refused);

    SessionBus bus_;
};

}
