#pragma once

#include "Freedesktop/GLibOwners.h"

#include <gio/gio.h>

#include <string>

namespace marrowick {

/// The icon of the volume whose root is at `path`; null where no volume is mounted there. Nothing of the volume itself is
/// touched: one whose server is gone would not answer.
GObjectOwner<GIcon> volumeIcon(std::string const& path);

}
