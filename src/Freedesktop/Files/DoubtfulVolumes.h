#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// Mount points of doubtful volumes: those whose files another machine or another program hands out, which may leave a
/// question without an answer for ever.
using VolumePaths = std::vector<std::string>;

/// The doubtful volumes of a mount table in the form of /proc/self/mountinfo. What is mounted later at the same place
/// covers what was there. The root is never among them: without it nothing runs.
VolumePaths doubtfulVolumes(std::string_view mountTable);

/// Those of the system's table; null when there are none. What changed in the last few milliseconds may be missing: that
/// makes it cheap enough to be asked about each of many items. Any thread.
std::shared_ptr<VolumePaths const> currentDoubtfulVolumes();

}
