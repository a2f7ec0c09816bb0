#pragma once

#include "Freedesktop/Files/DoubtfulVolumes.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

/// Which doubtful volumes the ways to the items of one folder enter: by a mount point in the folder, or by a link.
///
/// Finding out touches no volume that could be the answer. Those in which the folder itself lies are taken as answering:
/// whoever knows a name in the folder was told it by them.
class FolderWays {
public:
    /// Of a folder from which no way enters any.
    FolderWays() = default;

    /// Of the folder at `place`, an absolute path with no links in it, on a system with these volumes; null for none.
    FolderWays(std::string place, std::shared_ptr<VolumePaths const> volumes);

    /// Of the folder open as `directory`.
    static FolderWays of(int directory);

    /// Of the folder that holds the item at `path`; null where there are no volumes at all. For the items of one folder one
    /// after the other this costs little.
    static std::shared_ptr<FolderWays const> around(std::string const& path);

    /// Whether nothing need be asked of them.
    bool areHarmless() const { return !volumes_; }

    FolderWays below(std::string_view name) const;
    std::string pathOf(std::string_view name) const;

    /// The volume that is mounted at the item itself.
    std::optional<std::string> volumeAt(std::string_view name) const;

    /// The first volume on the way to the item once links are followed. An item inside a volume may be asked for under the
    /// path of a volume that lies deeper.
    std::optional<std::string> volumeBehind(std::string_view name) const;

private:
    /// Empty for the root.
    std::string place_;
    std::shared_ptr<VolumePaths const> volumes_;
    /// Those volumes in which the folder does not lie.
    VolumePaths strange_;
    /// Whether one of them is mounted directly in the folder.
    bool holdsVolume_ = false;
};

/// The doubtful volume that the last step to `path` enters, links followed, as above.
std::optional<std::string> volumeEntered(std::string const& path);

/// The first doubtful volume that the way to `path` enters at any step, links followed.
std::optional<std::string> volumeOnTheWay(std::string const& path);

}
