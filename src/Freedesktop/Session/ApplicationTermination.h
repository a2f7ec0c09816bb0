#pragma once

#include "Freedesktop/Session/ApplicationFacts.h"
#include "Freedesktop/Session/XConnection.h"

#include <vector>

namespace marrowick {

/// Those of `listed` that are windows of the application as `facts` knew it: the same ones, and later ones of the same
/// class and process.
std::vector<ClientWindow> windowsOfApplication(ApplicationFacts const& facts, std::vector<ClientWindow> const& listed);

/// Asks the window manager to close the application's windows, as the user does. Where it has none any more, those of its
/// processes that have no window at all are asked to end. This program quits.
void askToTerminate(ApplicationFacts const& facts, XConnection& connection);

/// Kills the application's processes. A window whose process cannot be killed from here, as it runs on another machine or
/// does not tell, is cut off from the display instead. This program quits.
void forceTermination(ApplicationFacts const& facts, XConnection& connection);

}
