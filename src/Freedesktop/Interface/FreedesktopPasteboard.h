#pragma once

#include "Platform/Pasteboard.h"

namespace marrowick {

/// The desktop's clipboard; what is selected for the middle button stays as it is.
class FreedesktopPasteboard final : public Pasteboard {
public:
    void setText(std::string_view text) override;
};

}
