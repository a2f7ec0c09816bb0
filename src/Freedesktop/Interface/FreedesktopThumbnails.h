#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Platform/Thumbnails.h"

#include <memory>

namespace marrowick {

class FreedesktopThumbnails final : public Thumbnails {
public:
    /// Pictures come through `gate`.
    explicit FreedesktopThumbnails(std::shared_ptr<DeliveryGate> gate);

    void generate(
        FileURL const& url, int pointSize, double scale, std::function<void(std::optional<Bitmap>)> done) override;

private:
    std::shared_ptr<DeliveryGate> gate_;
};

}
