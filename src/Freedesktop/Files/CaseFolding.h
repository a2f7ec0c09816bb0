#pragma once

#include <string_view>

namespace marrowick {

/// Whether `text` holds `fragment` as whole characters, without regard to case and to how accents are encoded; an accent
/// itself counts. Invalid UTF-8 is taken as U+FFFD. Nothing holds the empty fragment.
bool containsIgnoringCase(std::string_view text, std::string_view fragment, bool turkicCases);

}
