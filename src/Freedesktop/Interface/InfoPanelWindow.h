#pragma once

#include "Platform/InfoPanel.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace marrowick {

class DraggableIcon;
class ElidedLabel;
class PressableLabel;
class TextPane;

/// The Info window: a small tool window above the others, which closing only hides.
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

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void layOut();
    void applyFonts();
    void applyColours();
    /// Puts something into the window, at once or when it is shown the next time.
    void fill(std::function<void()> part);
    void fillEverything();
    /// Asks for the keyboard, at once or when the last menu has closed.
    void takeKeys();
    void waitForMenus(bool waits);

    InfoPanelHandlers handlers_;
    DraggableIcon* icon_;
    ElidedLabel* name_;
    ElidedLabel* detail_;
    PressableLabel* path_;
    TextPane* preview_;
    std::vector<std::function<void()>> unfilled_;
    bool isWaitingForMenus_ = false;
};

}
