#pragma once

#include "Platform/Log.h"

#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// Remembers every line.
class FakeLog final : public Log {
public:
    void write(std::string_view message) override
    {
        std::lock_guard const lock(mutex_);
        lines_.push_back(withoutControlCharacters(message));
        if (echoes_)
            std::fprintf(stderr, "%s\n", lines_.back().c_str());
    }

    std::vector<std::string> lines() const
    {
        std::lock_guard const lock(mutex_);
        return lines_;
    }

    /// Also shows each line on standard error, where the parent of a dying process sees it.
    void echoToStandardError()
    {
        std::lock_guard const lock(mutex_);
        echoes_ = true;
    }

private:
    static std::string withoutControlCharacters(std::string_view message)
    {
        static constexpr char digits[] = "0123456789ABCDEF";
        std::string line;
        for (char const character : message) {
            auto const byte = static_cast<unsigned char>(character);
            if (byte >= 0x20 && byte != 0x7F)
                line += character;
            else
                line += { '\\', 'x', digits[byte >> 4], digits[byte & 0xF] };
        }
        return line;
    }

    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
    bool echoes_ = false;
};

}
