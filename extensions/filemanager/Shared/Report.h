#pragma once

namespace marrowick::companion {

/// Says in the log, the first time in a process, that the windows of this version of the file manager cannot be read.
/// `missing` is what it lacks.
void reportUnreadable(char const* fileManager, char const* missing);

}
