#include "Support/FileURLText.h"

#include <string>
#include <utility>

namespace marrowick {

namespace {

std::optional<unsigned char> hexDigit(char digit)
{
    if (digit >= '0' && digit <= '9')
        return static_cast<unsigned char>(digit - '0');
    char const lower = static_cast<char>(digit | 0x20);
    if (lower >= 'a' && lower <= 'f')
        return static_cast<unsigned char>(lower - 'a' + 10);
    return std::nullopt;
}

std::optional<std::string> removingPercentEncoding(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '%') {
            bytes += text[index];
            continue;
        }
        if (index + 2 >= text.size())
            return std::nullopt;
        auto const high = hexDigit(text[index + 1]);
        auto const low = hexDigit(text[index + 2]);
        if (!high || !low)
            return std::nullopt;
        bytes += static_cast<char>(*high << 4 | *low);
        index += 2;
    }
    if (bytes.find('\0') != std::string::npos)
        return std::nullopt;
    return bytes;
}

bool takePrefix(std::string_view& text, std::string_view prefix)
{
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

}

std::optional<FileURL> fileURLFromText(std::string_view text)
{
    if (!takePrefix(text, "file:"))
        return std::nullopt;
    if (takePrefix(text, "//"))
        takePrefix(text, "localhost");
    if (!text.starts_with('/'))
        return std::nullopt;
    auto path = removingPercentEncoding(text.substr(0, text.find_first_of("?#")));
    if (!path)
        return std::nullopt;
    return FileURL(std::move(*path));
}

}
