#pragma once

#include <functional>
#include <memory>
#include <string>

namespace marrowick::benchmarks {

/// Pops a menu up and returns what keeps it alive.
using PopUp = std::function<std::shared_ptr<void>()>;

/// Adds a benchmark from the click to the menu's first painting. Closing it is not part of the measure.
void registerMenu(std::string const& name, PopUp popUp);

}
