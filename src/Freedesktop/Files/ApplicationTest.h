#pragma once

#include "Freedesktop/Files/ItemValues.h"

#include <optional>
#include <string>

namespace marrowick {

/// Whether the item at `path` is an application: a directory with the extension "app", a desktop entry of an
/// application, or an executable AppImage. Links are followed to what they lead to, whose own name counts. Absent when
/// that cannot be read. `kind` is that of the item at `path` itself and is known.
std::optional<bool> isApplication(std::string const& path, ItemKind kind);

/// The same for a link that is known to lead to a directory; in most cases without going the whole way again.
std::optional<bool> leadsToApplicationDirectory(ItemPlace const& place);

}
