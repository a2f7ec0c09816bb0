#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace marrowick::benchmarks {

/// Many applications, installed for this process alone: made before anything asks what is installed. Icon themes and file
/// types are the system's own.
class InstalledCrowd {
public:
    struct Application {
        std::string name;
        /// Of the icon theme.
        std::string iconName;
        /// What its windows say that they are.
        std::string wmClass;
    };

    explicit InstalledCrowd(std::size_t count);
    ~InstalledCrowd();
    InstalledCrowd(InstalledCrowd const&) = delete;
    InstalledCrowd& operator=(InstalledCrowd const&) = delete;

    std::vector<Application> const& applications() const { return applications_; }

private:
    std::string path_;
    std::vector<Application> applications_;
};

}
