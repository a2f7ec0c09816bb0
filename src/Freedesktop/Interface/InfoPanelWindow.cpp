#include "Freedesktop/Interface/InfoPanelWindow.h"

#include <utility>

namespace marrowick {

InfoPanelWindow::InfoPanelWindow(InfoPanelHandlers handlers)
    : handlers_(std::move(handlers))
{
}

void InfoPanelWindow::setName(std::string const&) { }
void InfoPanelWindow::setDetail(std::string const&) { }
void InfoPanelWindow::setPath(std::string const&) { }
void InfoPanelWindow::setPreview(std::optional<std::string> const&) { }
void InfoPanelWindow::setIcon(Bitmap const&) { }
double InfoPanelWindow::backingScaleFactor() const
{
    return devicePixelRatioF();
}
void InfoPanelWindow::dragIcon(FileURL const&) { }
void InfoPanelWindow::show() { }
void InfoPanelWindow::close() { }

}
