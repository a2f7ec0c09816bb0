#pragma once

namespace marrowick {

/// Gives an item another name, or another place in the same file system, if that name is free: in one step where the file
/// system can, else so that a name that another program takes meanwhile is never replaced. Returns zero, or the system's
/// error number: EEXIST when the name is taken.
int renameWithoutReplacing(int fromFolder, char const* fromName, int toFolder, char const* toName);

}
