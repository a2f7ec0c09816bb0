#include "UI/TextPreview.h"

#include "Platform/Platform.h"
#include "Support/Characters.h"

#include <cstddef>
#include <string_view>

namespace marrowick {

namespace {

constexpr std::size_t mostCharacters = 4000;
constexpr std::size_t longestCharacter = 4;
constexpr std::size_t largestFile = std::size_t { 16 } * 1024 * 1024;

std::string_view firstCharacters(std::string_view text)
{
    std::size_t length = 0;
    for (std::size_t count = 0; count < mostCharacters && length < text.size(); ++count)
        length += firstCharacterLength(text.substr(length));
    return text.substr(0, length);
}

}

std::string textPreview(FileURL const& url)
{
    auto const& files = *platform().fileContents;
    auto content = files.read(url, largestFile);
    if (content)
        return isValidUTF8(content.value()) ? std::string(firstCharacters(content.value())) : std::string();
    if (content.error().kind != ErrorKind::tooLarge)
        return {};
    // A character may be cut in two at the end of what is read, but not before the last one that is shown.
    auto const beginning = files.readBeginning(url, mostCharacters * longestCharacter);
    auto const shown = beginning ? firstCharacters(beginning.value()) : std::string_view();
    return isValidUTF8(shown) ? std::string(shown) : std::string();
}

}
