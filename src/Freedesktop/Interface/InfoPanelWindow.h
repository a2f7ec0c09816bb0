#pragma once

#include "Platform/InfoPanel.h"

#include <QWidget>

namespace marrowick {

/// The Info window: a small tool window above the others.
class InfoPanelWindow final : public QWidget, public InfoPanel {
public:
    explicit InfoPanelWindow(InfoPanelHandlers handlers);

    void setName(std::string const& name) override;
    void setDetail(std::string const& detail) override;
    void setPath(std::string const& path) override;
    void setPreview(std::optional<std::string> const& text) override;
    void setIcon(Bitmap const& icon) override;
    double backingScaleFactor() const override;
    void dragIcon(FileURL const& url) override;
    void show() override;
    void close() override;

private:
    InfoPanelHandlers handlers_;
};

}
