#pragma once

#include "Fakes/CallRecord.h"
#include "Fakes/FakeDispatch.h"
#include "Platform/Windows.h"

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

/// The program's windows without a screen: what they show, and the user at them.
class FakeWindows final : public Windows {
public:
    struct InfoState {
        InfoPanelHandlers handlers;
        std::string name;
        std::string detail;
        std::string path;
        std::optional<std::string> preview;
        std::optional<Bitmap> icon;
        std::vector<FileURL> dragged;
        bool isShown = false;
        int timesShown = 0;
    };

    struct PreferencesState {
        PreferencesLayout layout;
        PreferencesHandlers handlers;
        std::string folder;
        std::optional<std::size_t> sortMode;
        std::map<std::size_t, bool> checked;
        /// The tags of the checkboxes in the order in which they were set last.
        std::vector<std::size_t> settingOrder;
        int timesShown = 0;
    };

    class Preview final : public PreviewPanel {
    public:
        explicit Preview(CallRecord& calls)
            : calls_(calls)
        {
        }
        void setDataSource(PreviewPanelDataSource* source) override
        {
            dataSource = source;
            calls_.push_back(source ? "preview asks" : "preview asks nobody");
        }
        void makeKeyAndOrderFront() override { calls_.push_back("preview in front"); }
        void reloadData() override
        {
            calls_.push_back("preview reloads");
            shown = dataSource && dataSource->numberOfPreviewItems(*this) > 0 ? dataSource->previewPanel(*this, 0)
                                                                              : std::nullopt;
        }

        PreviewPanelDataSource* dataSource = nullptr;
        std::optional<FileURL> shown;

    private:
        CallRecord& calls_;
    };

    struct Choice {
        FileURL startingIn;
        std::function<void(std::optional<FileURL>)> done;
    };

    FakeWindows(CallRecord& calls, FakeDispatch& dispatch)
        : preview(calls)
        , calls_(calls)
        , dispatch_(dispatch)
    {
    }

    std::unique_ptr<InfoPanel> makeInfoPanel(InfoPanelHandlers handlers) override;
    std::unique_ptr<PreferencesWindow> makePreferencesWindow(
        PreferencesLayout const& layout, PreferencesHandlers handlers) override;
    PreviewPanel* previewPanel() override { return hasPreview ? &preview : nullptr; }
    void chooseFolder(FileURL const& startingIn, std::function<void(std::optional<FileURL>)> done) override
    {
        choices.push_back({ startingIn, std::move(done) });
    }

    /// The user presses the button of the Info window.
    void press(std::string_view title);

    /// The user answers the folder dialog that was opened first, with none for Cancel.
    void answerChoice(std::optional<FileURL> const& folder)
    {
        if (choices.empty()) {
            ADD_FAILURE() << "no folder is being chosen";
            return;
        }
        auto const done = choices.front().done;
        choices.pop_front();
        dispatch_.deliver([done, folder] { done(folder); });
    }

    InfoState info;
    PreferencesState preferences;
    Preview preview;
    bool hasPreview = true;
    double scale = 1;
    std::deque<Choice> choices;

private:
    class Info;
    class Settings;

    CallRecord& calls_;
    FakeDispatch& dispatch_;
};

}
