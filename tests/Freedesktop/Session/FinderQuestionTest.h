#pragma once

#include "Freedesktop/Session/FileManagerProcess.h"
#include "Freedesktop/Session/FreedesktopScriptingBridge.h"
#include "Freedesktop/Session/SessionSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace marrowick {

/// Asks the two questions as the program does.
class FinderQuestionTest : public testing::Test {
protected:
    using Answer = std::variant<EventDescriptor, ScriptFailure>;

    Answer askForSelection()
    {
        return bridge_->execute("tell application \"Finder\" to get (selection as alias list)");
    }
    Answer askForTarget()
    {
        return bridge_->execute("tell application \"Finder\" to get (target of front window as alias)");
    }

    /// The selected URLs, or the failure as the only text.
    std::vector<std::string> selection()
    {
        auto const answer = askForSelection();
        if (auto const* const failure = std::get_if<ScriptFailure>(&answer))
            return { failure->errorDescription.value_or("no script") };
        std::vector<std::string> urls;
        for (auto const& item : std::get<EventDescriptor::List>(std::get<EventDescriptor>(answer).value))
            urls.push_back(std::get<EventDescriptor::FileReference>(item.value).url);
        return urls;
    }

    /// The URL of the front window's folder, empty for none, or the failure.
    std::string target()
    {
        auto const answer = askForTarget();
        if (auto const* const failure = std::get_if<ScriptFailure>(&answer))
            return failure->errorDescription.value_or("no script");
        auto const* const reference
            = std::get_if<EventDescriptor::FileReference>(&std::get<EventDescriptor>(answer).value);
        return reference ? reference->url : std::string();
    }

    std::shared_ptr<XConnection> connection_ = std::make_shared<XConnection>();
    std::unique_ptr<FreedesktopScriptingBridge> bridge_ = std::make_unique<FreedesktopScriptingBridge>(connection_);
};

}
