#pragma once

#include "Platform/Log.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace marrowick::contract {

/// What every log does for its callers; `lines` tells the lines written so far.
inline void logKeepsItsPromises(Log& log, std::function<std::vector<std::string>()> const& lines)
{
    log.write("Marrowick: plain");
    log.write("two\nlines\r\tand\x01\x1F\x7F");
    log.write("caf\xC3\xA9 \xFF \\x00 %s");
    log.write(std::string("a\0b", 3));
    log.write("");
    EXPECT_EQ(lines(),
        (std::vector<std::string> { "Marrowick: plain", "two\\x0Alines\\x0D\\x09and\\x01\\x1F\\x7F",
            "caf\xC3\xA9 \xFF \\x00 %s", "a\\x00b", "" }));
}

}
