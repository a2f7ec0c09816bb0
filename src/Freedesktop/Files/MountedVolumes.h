#pragma once

#include <string>
#include <vector>

namespace marrowick {

/// One line of the system's mount table.
struct Mount {
    std::string path;
    /// Options separated by commas, among them those by which an administrator shows or hides a volume.
    std::string options;
    /// Whether it belongs to the system's own working, by its file system, device or place.
    bool isSystemInternal = false;
    /// Whether the viewer may enter the folder that holds the mount point: another user's media lie in that user's own.
    bool isReachable = true;
};

/// Whose view of the volumes is asked for.
struct VolumeViewer {
    std::string home;
    std::string userName;
    bool isSuperuser = false;
};

/// The mount points of `mounts`, the system's table in its order, that file managers show to `viewer`: "/", and those
/// below "/media", below the user's own folder in "/run/media" and below the home folder, unless the system's own, in a
/// hidden folder, or hidden by option; and what is shown by option.
///
/// Decided from the table alone. The mount points themselves are not touched: one whose server is gone would not answer.
std::vector<std::string> shownVolumes(std::vector<Mount> const& mounts, VolumeViewer const& viewer);

/// The system's table at this moment.
std::vector<Mount> currentMounts();

/// The user of this process.
VolumeViewer currentViewer();

}
