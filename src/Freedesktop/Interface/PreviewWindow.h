#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Platform/PreviewPanel.h"

#include <QWidget>

#include <memory>

namespace marrowick {

/// The preview of one file's content.
class PreviewWindow final : public QWidget, public PreviewPanel {
public:
    /// What is loaded in the background comes through `gate`.
    explicit PreviewWindow(std::shared_ptr<DeliveryGate> gate);

    void setDataSource(PreviewPanelDataSource* dataSource) override;
    void makeKeyAndOrderFront() override;
    void reloadData() override;

private:
    std::shared_ptr<DeliveryGate> gate_;
    PreviewPanelDataSource* dataSource_ = nullptr;
};

}
