#include "Fakes/FakeWindows.h"

#include <algorithm>

namespace marrowick {

class FakeWindows::Info final : public InfoPanel {
public:
    explicit Info(FakeWindows& windows)
        : windows_(windows)
        , state_(windows.info)
    {
    }

    void setName(std::string const& name) override { state_.name = name; }
    void setDetail(std::string const& detail) override { state_.detail = detail; }
    void setPath(std::string const& path) override { state_.path = path; }
    void setPreview(std::optional<std::string> const& text) override { state_.preview = text; }
    void setIcon(Bitmap const& icon) override { state_.icon = icon; }
    double backingScaleFactor() const override { return windows_.scale; }
    void dragIcon(FileURL const& url) override { state_.dragged.push_back(url); }
    void show() override
    {
        state_.isShown = true;
        ++state_.timesShown;
        windows_.calls_.push_back("info in front");
    }
    void close() override { state_.isShown = false; }

private:
    FakeWindows& windows_;
    InfoState& state_;
};

class FakeWindows::Settings final : public PreferencesWindow {
public:
    explicit Settings(FakeWindows& windows)
        : windows_(windows)
        , state_(windows.preferences)
    {
    }

    void setFolder(std::string const& path) override { state_.folder = path; }
    void selectSortMode(std::size_t index) override
    {
        state_.sortMode = index;
        state_.settingOrder.clear();
    }
    void setChecked(std::size_t tag, bool isOn) override
    {
        state_.checked[tag] = isOn;
        state_.settingOrder.push_back(tag);
    }
    void show() override
    {
        ++state_.timesShown;
        windows_.calls_.push_back("preferences in front");
    }

private:
    FakeWindows& windows_;
    PreferencesState& state_;
};

std::unique_ptr<InfoPanel> FakeWindows::makeInfoPanel(InfoPanelHandlers handlers)
{
    info.handlers = std::move(handlers);
    return std::make_unique<Info>(*this);
}

std::unique_ptr<PreferencesWindow> FakeWindows::makePreferencesWindow(
    PreferencesLayout const& layout, PreferencesHandlers handlers)
{
    preferences.layout = layout;
    preferences.handlers = std::move(handlers);
    return std::make_unique<Settings>(*this);
}

void FakeWindows::press(std::string_view title)
{
    auto const& buttons = info.handlers.buttons;
    auto const button = std::find_if(
        buttons.begin(), buttons.end(), [&](PushButton const& candidate) { return candidate.title == title; });
    if (button == buttons.end())
        ADD_FAILURE() << "the Info window has no button \"" << title << "\"";
    else
        button->action();
}

}
