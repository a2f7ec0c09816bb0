#pragma once

#include "Fakes/CallRecord.h"
#include "Fakes/FakeDispatch.h"
#include "Fakes/FakeMenuPresenter.h"
#include "Platform/Alerts.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

/// Alerts that answer themselves as the test has said beforehand. Every alert takes one answer, that of an error too; one
/// that finds none, and an answer that no alert has taken at the end, fail the test.
class FakeAlerts final : public Alerts {
public:
    FakeAlerts(CallRecord& calls, FakeDispatch& dispatch, FakeMenuPresenter& menus)
        : calls_(calls)
        , dispatch_(dispatch)
        , menus_(menus)
    {
    }
    ~FakeAlerts() override { EXPECT_TRUE(answers.empty()) << answers.size() << " answers that no alert asked for"; }

    std::size_t runModal(Alert const& alert) override
    {
        asked.push_back(alert);
        calls_.push_back("ask " + alert.messageText);
        // Where nobody answers, the user closes the alert.
        return answerOr(alert.buttons.empty() ? 0 : alert.buttons.size() - 1, alert.messageText);
    }

    void runModal(Error const& error) override
    {
        errors.push_back(error);
        calls_.push_back("show error " + error.message);
        answerOr(0, error.message);
    }

    /// The indexes of the buttons that will be pressed, one for each alert; any for the alert of an error.
    std::deque<std::size_t> answers;
    std::vector<Alert> asked;
    std::vector<Error> errors;
    /// Runs while an alert is up.
    std::function<void()> whileUp;

private:
    std::size_t answerOr(std::size_t closing, std::string const& text)
    {
        menus_.close();
        dispatch_.hold();
        // It may set another one for an alert on top of this.
        if (auto const work = whileUp)
            work();
        dispatch_.release();
        if (answers.empty()) {
            ADD_FAILURE() << "an alert that nobody expected: " << text;
            return closing;
        }
        auto const answer = answers.front();
        answers.pop_front();
        return answer;
    }

    CallRecord& calls_;
    FakeDispatch& dispatch_;
    FakeMenuPresenter& menus_;
};

}
