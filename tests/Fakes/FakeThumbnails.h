#pragma once

#include "Fakes/FakeDispatch.h"
#include "Platform/Thumbnails.h"

#include <deque>
#include <functional>
#include <optional>
#include <utility>

#include <gtest/gtest.h>

namespace marrowick {

/// Makes no picture before the test says which.
class FakeThumbnails final : public Thumbnails {
public:
    struct Question {
        FileURL url;
        int pointSize = 0;
        double scale = 0;
        std::function<void(std::optional<Bitmap>)> done;
    };

    explicit FakeThumbnails(FakeDispatch& dispatch)
        : dispatch_(dispatch)
    {
    }

    void generate(
        FileURL const& url, int pointSize, double scale, std::function<void(std::optional<Bitmap>)> done) override
    {
        questions.push_back({ url, pointSize, scale, std::move(done) });
    }

    /// What was asked first and is not answered yet is.
    void answer(std::optional<Bitmap> const& picture)
    {
        if (questions.empty()) {
            ADD_FAILURE() << "no picture is asked for";
            return;
        }
        auto const done = questions.front().done;
        questions.pop_front();
        dispatch_.deliver([done, picture] { done(picture); });
    }

    std::deque<Question> questions;

private:
    FakeDispatch& dispatch_;
};

}
