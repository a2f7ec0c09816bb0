#include "Freedesktop/Interface/PreviewWindow.h"

#include <utility>

namespace marrowick {

PreviewWindow::PreviewWindow(std::shared_ptr<DeliveryGate> gate)
    : gate_(std::move(gate))
{
}

void PreviewWindow::setDataSource(PreviewPanelDataSource* dataSource)
{
    dataSource_ = dataSource;
}

void PreviewWindow::makeKeyAndOrderFront() { }
void PreviewWindow::reloadData() { }

}
