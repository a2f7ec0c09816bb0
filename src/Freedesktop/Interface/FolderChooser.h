#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Platform/FileURL.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class QFileDialog;

namespace marrowick {

/// The desktop's dialog in which a folder is chosen or made. Main thread only.
class FolderChooser {
public:
    using Done = std::function<void(std::optional<FileURL>)>;

    /// Answers come through `gate`.
    explicit FolderChooser(std::shared_ptr<DeliveryGate> gate);
    /// A dialog that is open is taken away; nobody hears of it.
    ~FolderChooser();
    FolderChooser(FolderChooser const&) = delete;
    FolderChooser& operator=(FolderChooser const&) = delete;

    /// Opens the dialog in `startingIn`. One that is open already comes to the front instead, and `done` hears nothing
    /// chosen.
    void choose(FileURL const& startingIn, Done done);

private:
    std::shared_ptr<DeliveryGate> gate_;
    /// Queued answers end with it.
    QObject context_;
    QPointer<QFileDialog> dialog_;
};

}
