#include "Support/PropertyList.h"

#include "Support/PropertyListBytes.h"
#include "Support/PropertyListSamples.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <numeric>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <time.h>

namespace marrowick {
namespace {

using namespace samples;

constexpr std::size_t mebibyte = 1024 * 1024;

std::vector<std::string> validLists()
{
    std::string const xml
        = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
          "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"plist.dtd\">\n"
          "<plist version=\"1.0\">\n<array>\n\t<string>B &amp; C</string>\n"
          "\t<string>Schöne <![CDATA[<x>]]><!-- y -->&#233;</string>\n\t<string/>\n</array>\n</plist>";
    std::string const short16 = "<array><string>a&#233;b</string></array>";
    return { xml, utf16(short16, true), utf16(short16, false), bytesFromHex(twoNames), bytesFromHex(nonAsciiNames),
        bytesFromHex(longNameTwice), bytesFromHex(longNames), bytesFromHex(twentyNames), bytesFromHex(manyNames) };
}

/// A value or nothing; and a value is never more than what the bytes can stand for.
void expectBounded(std::string const& bytes)
{
    // The reader is given exactly these bytes on the heap, so that a sanitizer sees a read past their end.
    std::vector<char> const exact(bytes.begin(), bytes.end());
    auto const strings = stringArrayFromPropertyList({ exact.data(), exact.size() });
    if (!strings)
        return;
    EXPECT_LE(strings->size(), bytes.size());
    auto const length = std::accumulate(strings->begin(), strings->end(), std::size_t { 0 },
        [](std::size_t sum, std::string const& text) { return sum + text.size(); });
    EXPECT_LE(length, 24 * bytes.size());
}

TEST(PropertyListHostile, EveryTruncationIsUnreadable)
{
    for (auto const& whole : validLists()) {
        ASSERT_TRUE(stringArrayFromPropertyList(whole));
        for (std::size_t size = 0; size < whole.size(); ++size) {
            std::vector<char> const exact(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            EXPECT_EQ(stringArrayFromPropertyList({ exact.data(), exact.size() }), std::nullopt) << size;
        }
    }
}

TEST(PropertyListHostile, EveryChangedByteGivesAValueOrNothing)
{
    for (auto const& whole : validLists()) {
        for (std::size_t at = 0; at < whole.size(); ++at) {
            for (unsigned const change : { 0x01U, 0x02U, 0x04U, 0x08U, 0x10U, 0x20U, 0x40U, 0x80U, 0xFFU }) {
                auto changed = whole;
                changed[at] = static_cast<char>(static_cast<unsigned char>(changed[at]) ^ change);
                expectBounded(changed);
            }
        }
    }
}

TEST(PropertyListHostile, NoiseGivesAValueOrNothing)
{
    std::mt19937 random(1);
    auto const lists = validLists();
    auto const below
        = [&](std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random); };
    for (int round = 0; round < 20000; ++round) {
        auto bytes = lists[below(lists.size())];
        for (auto changes = below(6) + 1; changes > 0; --changes)
            bytes[below(bytes.size())] = static_cast<char>(below(256));
        expectBounded(bytes);
    }
    for (int round = 0; round < 20000; ++round) {
        std::string bytes = "bplist00";
        for (auto size = below(80); size > 0; --size)
            bytes.push_back(static_cast<char>(below(2) ? below(256) : below(12)));
        expectBounded(bytes);
    }
}

TEST(PropertyListHostile, EntityBombIsUnreadable)
{
    std::string laughs = "<!DOCTYPE plist [<!ENTITY a0 'lol'>";
    for (int level = 1; level < 30; ++level) {
        auto const reference = "&a" + std::to_string(level - 1) + ";";
        laughs += "<!ENTITY a" + std::to_string(level) + " '" + repeated(reference, 10 * reference.size()) + "'>";
    }
    laughs += "]><array><string>&a29;</string></array>";
    EXPECT_EQ(stringArrayFromPropertyList(laughs), std::nullopt);

    auto const blowup = "<!DOCTYPE plist [<!ENTITY a '" + std::string(mebibyte / 2, 'x') + "'>]><array><string>"
        + repeated("&a;", mebibyte / 2) + "</string></array>";
    EXPECT_EQ(stringArrayFromPropertyList(blowup), std::nullopt);
}

TEST(PropertyListHostile, StringNamedAgainAndAgainIsUnreadable)
{
    std::vector<std::uint64_t> const references(mebibyte / 2, 1);
    auto const bytes = binaryList({ binaryArray(references), binaryAscii(std::string(mebibyte / 2, 'x')) });
    EXPECT_EQ(stringArrayFromPropertyList(bytes), std::nullopt);
}

/// Time that this thread has spent computing, which other programs do not lengthen as they do the wall clock's.
double computingTime()
{
    timespec time {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double timeToRead(std::string const& bytes)
{
    double best = 1e9;
    for (int round = 0; round < 3; ++round) {
        auto const start = computingTime();
        auto const strings = stringArrayFromPropertyList(bytes);
        best = std::min(best, computingTime() - start);
    }
    return best;
}

/// The most memory that the process has held since `forgetPeak`, in bytes.
std::size_t peakMemory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stoul(line.substr(6)) * 1024;
    }
    return 0;
}

void forgetPeak()
{
    std::ofstream("/proc/self/clear_refs") << "5";
}

struct Hostile {
    char const* what;
    /// Makes bytes of about the given size.
    std::string (*make)(std::size_t size);
};

void PrintTo(Hostile const& hostile, std::ostream* out)
{
    *out << hostile.what;
}

std::string binaryOfNestedArrays(std::size_t size)
{
    std::vector<std::string> objects;
    for (std::size_t index = 0; index * 11 < size; ++index)
        objects.push_back(binaryArray({ index + 1 }, 4));
    objects.push_back(binaryAscii("a"));
    return binaryList(objects, 4);
}

std::string binaryOfDoublingArrays(std::size_t size)
{
    std::vector<std::string> objects;
    for (std::size_t index = 0; index * 15 < size; ++index)
        objects.push_back(binaryArray({ index + 1, index + 1 }, 4));
    objects.push_back(binaryAscii("a"));
    return binaryList(objects, 4);
}

/// Strings that each reach from their own beginning to the end of the objects, through all that follow.
std::string binaryOfOverlappingStrings(std::size_t size)
{
    std::size_t const count = size / 14;
    std::vector<std::uint64_t> references;
    for (std::size_t index = 0; index < count; ++index)
        references.push_back(index + 1);
    auto objects = binaryArray(references, 4);
    std::vector<std::uint64_t> offsets { 0 };
    auto const end = objects.size() + 6 * count;
    for (std::size_t index = 0; index < count; ++index) {
        offsets.push_back(objects.size());
        objects += "\x5F\x12" + bigEndian(end - objects.size() - 6, 4);
    }
    return binaryList(objects, offsets, 4);
}

std::string binaryOfOneString(std::size_t size, std::string const& object)
{
    return binaryList({ binaryArray(std::vector<std::uint64_t>(size, 1)), object });
}

std::string attributes(std::size_t size)
{
    std::string bytes = "<array";
    for (std::size_t number = 0; bytes.size() < size; ++number)
        bytes += " a" + std::to_string(number) + "=''";
    return bytes + "><string>a</string></array>";
}

std::string elementsOfManyNames(std::size_t size)
{
    std::string bytes = "<array>";
    for (std::size_t number = 0; bytes.size() < size; ++number)
        bytes += "<a" + std::to_string(number) + ">";
    return bytes;
}

std::vector<Hostile> const hostile {
    { "nested arrays", [](std::size_t size) { return repeated("<array>", size); } },
    { "nested lists", [](std::size_t size) { return repeated("<plist>", size); } },
    { "nested unknown elements", elementsOfManyNames },
    { "many attributes on one element", attributes },
    { "one attribute many times", [](std::size_t size) { return "<array" + repeated(" a=''", size) + "/>"; } },
    { "a long attribute", [](std::size_t size) { return "<array a='" + repeated("&#65; ", size) + "'/>"; } },
    { "a long tag", [](std::size_t size) { return "<" + std::string(size, 'a'); } },
    { "a tag of spaces", [](std::size_t size) { return "<array" + std::string(size, ' '); } },
    { "opening brackets", [](std::size_t size) { return std::string(size, '<'); } },
    { "an endless comment", [](std::size_t size) { return "<array><!--" + repeated("- ", size); } },
    { "an endless CDATA section", [](std::size_t size) { return "<array><string><![CDATA[" + repeated("]]", size); } },
    { "an endless document type",
        [](std::size_t size) { return "<!DOCTYPE plist SYSTEM '" + std::string(size, 'a'); } },
    { "an endless subset", [](std::size_t size) { return "<!DOCTYPE plist [" + repeated("<!ENTITY a 'b'>", size); } },
    { "empty strings", [](std::size_t size) { return "<array>" + repeated("<string/>", size) + "</array>"; } },
    { "text of references",
        [](std::size_t size) { return "<array><string>" + repeated("&amp;", size) + "</string></array>"; } },
    { "text of lines",
        [](std::size_t size) { return "<array><string>" + std::string(size, '\n') + "</string></array>"; } },
    { "text of CDATA sections",
        [](std::size_t size) { return "<array><string>" + repeated("<![CDATA[a]]>", size) + "</string></array>"; } },
    { "text in UTF-16",
        [](std::size_t size) {
            return utf16("<array><string>" + std::string(size / 2, 'a') + "</string></array>", true);
        } },
    { "null characters", [](std::size_t size) { return std::string(size, '\0'); } },
    { "binary nested arrays", binaryOfNestedArrays },
    { "binary doubling arrays", binaryOfDoublingArrays },
    { "binary overlapping strings", binaryOfOverlappingStrings },
    { "binary empty string many times", [](std::size_t size) { return binaryOfOneString(size, binaryAscii("")); } },
    { "binary short string many times",
        [](std::size_t size) { return binaryOfOneString(size, binaryAscii("abcdef")); } },
    { "binary long string many times",
        [](std::size_t size) { return binaryOfOneString(size / 2, binaryAscii(std::string(size / 2, 'a'))); } },
    { "binary long string in UTF-16 many times",
        [](std::size_t size) {
            return binaryOfOneString(size / 2, binaryUtf16(std::u16string(size / 4, u'\uFFFD')));
        } },
};

std::string nameOf(testing::TestParamInfo<Hostile> const& info)
{
    std::string name;
    for (char const* at = info.param.what; *at; ++at) {
        if (std::isalnum(static_cast<unsigned char>(*at)))
            name.push_back(at == info.param.what || at[-1] == ' '
                    ? static_cast<char>(std::toupper(static_cast<unsigned char>(*at)))
                    : *at);
    }
    return name;
}

class PropertyListCost : public testing::TestWithParam<Hostile> { };

TEST_P(PropertyListCost, TimeIsLinearInSize)
{
    auto const small = timeToRead(GetParam().make(mebibyte / 16));
    auto const large = timeToRead(GetParam().make(mebibyte / 2));
    // Eight times the bytes: eight times the time where it is linear, 64 times where it is quadratic. What ends at once
    // takes no time that could be compared.
    EXPECT_LT(large, 24 * small + 0.002);
}

TEST_P(PropertyListCost, MemoryIsBounded)
{
    auto const bytes = GetParam().make(mebibyte);
    forgetPeak();
    auto const before = peakMemory();
    ASSERT_GT(before, 0U);
    auto const strings = stringArrayFromPropertyList(bytes);
    EXPECT_LT(peakMemory() - before, 256 * mebibyte);
}

INSTANTIATE_TEST_SUITE_P(PropertyList, PropertyListCost, testing::ValuesIn(hostile), nameOf);

}
}
