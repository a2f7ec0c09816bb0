#include "Freedesktop/Interface/FreedesktopThumbnails.h"

#include <utility>

namespace marrowick {

FreedesktopThumbnails::FreedesktopThumbnails(std::shared_ptr<DeliveryGate> gate)
    : gate_(std::move(gate))
{
}

void FreedesktopThumbnails::generate(FileURL const&, int, double, std::function<void(std::optional<Bitmap>)> done)
{
    gate_->deliver([done = std::move(done)] { done(std::nullopt); });
}

}
