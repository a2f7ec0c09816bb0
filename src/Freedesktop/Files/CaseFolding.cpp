#include "Freedesktop/Files/CaseFolding.h"

#include "Freedesktop/Files/UnicodeText.h"

#include <string>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

namespace marrowick {

namespace {

/// The result of `convert(buffer, capacity, error)`, a conversion in the library's manner, which tells the size that it
/// needs. Empty when it fails.
template<typename Convert>
std::u16string converted(std::size_t expectedSize, Convert const& convert)
{
    std::u16string result(expectedSize, u'\0');
    for (;;) {
        UErrorCode error = U_ZERO_ERROR;
        auto const size = convert(result.data(), static_cast<std::int32_t>(result.size()), &error);
        bool const isTooSmall = error == U_BUFFER_OVERFLOW_ERROR;
        if (U_FAILURE(error) && !isTooSmall)
            return {};
        result.resize(static_cast<std::size_t>(size));
        if (!isTooSmall)
            return result;
    }
}

std::u16string normalized(std::u16string const& text, UNormalizer2 const* normalizer)
{
    return converted(text.size() + 16, [&](char16_t* buffer, std::int32_t capacity, UErrorCode* error) {
        return unorm2_normalize(
            normalizer, text.data(), static_cast<std::int32_t>(text.size()), buffer, capacity, error);
    });
}

std::u16string caseFolded(std::u16string const& text, bool turkicCases)
{
    std::uint32_t const options = turkicCases ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT;
    return converted(text.size() + 16, [&](char16_t* buffer, std::int32_t capacity, UErrorCode* error) {
        return u_strFoldCase(buffer, capacity, text.data(), static_cast<std::int32_t>(text.size()), options, error);
    });
}

UNormalizer2 const* composingNormalizer()
{
    static UNormalizer2 const* const normalizer = [] {
        UErrorCode error = U_ZERO_ERROR;
        auto const* instance = unorm2_getNFCInstance(&error);
        return U_SUCCESS(error) ? instance : nullptr;
    }();
    return normalizer;
}

/// The text by which texts that differ in case and encoding only are equal. Composed, because a letter is not to be
/// found in the same letter with an accent; composed before too, because the dotted capital I is a letter of its own in
/// Turkish.
std::u16string comparable(std::string_view text, UNormalizer2 const* normalizer, bool turkicCases)
{
    return normalized(caseFolded(normalized(utf16Of(text), normalizer), turkicCases), normalizer);
}

/// Whether a character may begin at `position`: no accent or other part that belongs to what is before it.
bool isBoundary(std::u16string const& text, std::size_t position, UNormalizer2 const* normalizer)
{
    if (position == 0 || position == text.size())
        return true;
    UChar32 character = 0;
    U16_GET(text.data(), std::size_t { 0 }, position, text.size(), character);
    return unorm2_hasBoundaryBefore(normalizer, character) != 0;
}

}

bool containsIgnoringCase(std::string_view text, std::string_view fragment, bool turkicCases)
{
    auto const* normalizer = composingNormalizer();
    if (fragment.empty() || !normalizer)
        return false;
    auto const whole = comparable(text, normalizer, turkicCases);
    auto const part = comparable(fragment, normalizer, turkicCases);
    if (part.empty())
        return false;
    for (auto found = whole.find(part); found != std::u16string::npos; found = whole.find(part, found + 1)) {
        if (isBoundary(whole, found, normalizer) && isBoundary(whole, found + part.size(), normalizer))
            return true;
    }
    return false;
}

}
