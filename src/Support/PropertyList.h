#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// The strings, in UTF-8 and in their order, of an XML or binary property list whose root is an array of nothing but
/// strings. Absent for everything else: other bytes, another root, a member of another kind, text that is no Unicode.
///
/// Made for files that anybody may have written. Time and memory are linear in the size of `bytes` whatever they hold;
/// the limit to that size is the caller's. Nothing outside `bytes` is read.
/// - XML may leave out the `plist` element around the array. A document that brings declarations of its own (an
/// internal
///   DTD subset) is refused, and so are references to entities that only such a declaration can define.
/// - A binary list may name one string several times, and each time counts as a member; but one whose members add up to
///   many times its own size is refused.
std::optional<std::vector<std::string>> stringArrayFromPropertyList(std::string_view bytes);

}
