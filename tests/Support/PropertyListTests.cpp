#include "Support/PropertyList.h"

#include "Support/PropertyListBytes.h"
#include "Support/PropertyListSamples.h"

#include <cstdio>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using namespace samples;

using Strings = std::vector<std::string>;

struct Readable {
    char const* what;
    std::string bytes;
    Strings strings;
};

struct Unreadable {
    char const* what;
    std::string bytes;
};

void expectReadable(std::vector<Readable> const& rows)
{
    for (auto const& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(stringArrayFromPropertyList(row.bytes), row.strings);
    }
}

void expectUnreadable(std::vector<Unreadable> const& rows)
{
    for (auto const& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(stringArrayFromPropertyList(row.bytes), std::nullopt);
    }
}

Strings numbers(int count)
{
    Strings strings;
    for (int number = 0; number < count; ++number)
        strings.push_back(std::to_string(number));
    return strings;
}

std::string repeatedText(std::string_view piece, std::size_t count)
{
    return repeated(piece, piece.size() * count);
}

std::string const written = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<array>
	<string>B &amp; C</string>
	<string>Schöne &lt;x&gt;</string>
</array>
</plist>
)";

std::string list(std::string const& members)
{
    return "<plist version=\"1.0\"><array>" + members + "</array></plist>";
}

std::string latin1(std::string const& members)
{
    return "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><plist><array>" + members + "</array></plist>";
}

TEST(PropertyList, XmlArrayOfStringsIsRead)
{
    expectReadable({
        { "as writers write it", written, { "B & C", "Schöne <x>" } },
        { "no members", list(""), {} },
        { "array without an end tag", "<plist><array/></plist>", {} },
        { "empty members", list("<string/><string></string>"), { "", "" } },
        { "spaces around a name are part of it", list("<string> a\n b\t</string>"), { " a\n b\t" } },
        { "spaces alone are a name", list("<string>  </string>"), { "  " } },
        { "predefined entities", list("<string>&lt;&gt;&amp;&apos;&quot;</string>"), { "<>&'\"" } },
        { "character references", list("<string>&#65;&#x1F600;&#xe9;&#13;</string>"), { "A😀é\r" } },
        { "CDATA inside text", list("<string>a<![CDATA[<b> & ]]]><![CDATA[]>c]]>d</string>"), { "a<b> & ]]>cd" } },
        { "comment inside text", list("<string>a<!-- b -->c</string>"), { "ac" } },
        { "processing instruction inside text", list("<string>a<?b c?>d</string>"), { "ad" } },
        { "comments between elements", list("<!-- a --><string>b</string><!-- <string>c</string> -->"), { "b" } },
        { "no plist element", "<array><string>a</string></array>", { "a" } },
        { "no declaration, spaces and comments outside", "\n<!-- a -->\n<plist><array/></plist>\n<!-- b -->\n", {} },
        { "attributes", "<plist a='1'><array b='2'><string c='3'>d</string></array></plist>", { "d" } },
        { "document type without a subset", "<!DOCTYPE plist SYSTEM 'file:///missing'>" + list(""), {} },
        { "byte order mark", "\xEF\xBB\xBF" + list("<string>é</string>"), { "é" } },
        { "UTF-16, big end first", utf16(list("<string>a&#xe9;</string>"), false), { "aé" } },
        { "UTF-16, little end first", utf16(list("<string>a&#xe9;</string>"), true), { "aé" } },
        { "a declared encoding", latin1("<string>\xE9</string>"), { "é" } },
        { "one name twice", list("<string>a</string><string>a</string>"), { "a", "a" } },
        { "a long name", list("<string>" + std::string(100000, 'x') + "</string>"), { std::string(100000, 'x') } },
        { "many names", list(repeatedText("<string>a</string>", 3000)), Strings(3000, "a") },
    });
}

TEST(PropertyList, XmlOfAnotherFormIsUnreadable)
{
    auto const declaring = [](std::string const& declarations, std::string const& members) {
        return "<!DOCTYPE plist [" + declarations + "]>" + list(members);
    };
    expectUnreadable({
        { "nothing", "" },
        { "spaces", "  \n" },
        { "text", "Mail.app\nNotes\n" },
        { "the old text form", "(\"a\", \"b\")" },
        { "JSON", "[\"a\", \"b\"]" },
        { "cut short", written.substr(0, written.size() - 3) },
        { "empty plist element", "<plist/>" },
        { "string as root", "<plist><string>a</string></plist>" },
        { "dictionary as root", "<plist><dict><key>a</key><string>b</string></dict></plist>" },
        { "number as member", list("<string>a</string><integer>1</integer>") },
        { "array as member", list("<array><string>a</string></array>") },
        { "unknown element as member", list("<text>a</text>") },
        { "element inside a string", list("<string>a<b/>c</string>") },
        { "string inside a string", list("<string><string>a</string></string>") },
        { "text between members", list("<string>a</string>b<string>c</string>") },
        { "text as CDATA between members", list("<![CDATA[a]]>") },
        { "a character reference between members", list("&#97;") },
        { "text before the array", "<plist>a<array/></plist>" },
        { "text after the array", "<plist><array/>a</plist>" },
        { "text after the root", "<plist><array/></plist>a" },
        { "two arrays", "<plist><array/><array/></plist>" },
        { "two roots", list("") + list("") },
        { "plist in plist", "<plist><plist><array/></plist></plist>" },
        { "plist in an array", "<array><plist/></array>" },
        { "names in another letter case", "<PLIST><ARRAY/></PLIST>" },
        { "names with a prefix", "<p:plist xmlns:p='p'><p:array/></p:plist>" },
        { "another document", "<html><body/></html>" },
        { "wrong end tag", "<plist><array><string>a</array></string></plist>" },
        { "invalid UTF-8", list("<string>\xFF</string>") },
        { "an encoded surrogate", list("<string>\xED\xA0\x80</string>") },
        { "a reference to a surrogate", list("<string>&#xD800;</string>") },
        { "a control character", list("<string>\x01</string>") },
        { "a null character", list(std::string("<string>a\0b</string>", 20)) },
        { "an unknown encoding", "<?xml version='1.0' encoding='EBCDIC'?><plist><array/></plist>" },
        { "an undefined entity", list("<string>&a;</string>") },
        { "an entity that the named type might define", "<!DOCTYPE p SYSTEM 'p'>" + list("<string>&a;</string>") },
        { "an entity between members that the named type might define", "<!DOCTYPE p SYSTEM 'p'>" + list("&a;") },
        { "an entity declared and used", declaring("<!ENTITY a 'b'>", "<string>&a;</string>") },
        { "an entity declared and not used", declaring("<!ENTITY a 'b'>", "<string>b</string>") },
        { "an empty subset", declaring("", "<string>a</string>") },
        { "an attribute with a default", declaring("<!ATTLIST string a CDATA 'b'>", "<string>a</string>") },
        { "a parameter entity", declaring("<!ENTITY % a SYSTEM 'file:///dev/zero'> %a;", "<string>a</string>") },
    });
}

TEST(PropertyList, BinaryArrayOfStringsIsRead)
{
    std::string const long1(300, 'a');
    auto const long2 = repeatedText("é", 300);
    std::string const sixty(60, 'x');
    expectReadable({
        { "two names", bytesFromHex(twoNames), { "B", "A" } },
        { "names of several scripts", bytesFromHex(nonAsciiNames), { "Schöne Grüße.txt", "日本語", "😀---z", "plain" } },
        { "no names", bytesFromHex(noNames), {} },
        { "an empty name", bytesFromHex(emptyName), { "" } },
        { "a name twice", bytesFromHex(longNameTwice), { sixty, sixty } },
        { "lengths of two bytes", bytesFromHex(longNames), { long1, long2 } },
        { "a count that does not fit the mark", bytesFromHex(twentyNames), numbers(20) },
        { "references of two bytes", bytesFromHex(manyNames), numbers(260) },
        { "references of three bytes", binaryList({ binaryArray({ 1 }, 3), binaryAscii("a") }, 3), { "a" } },
        { "references of eight bytes", binaryList({ binaryArray({ 1 }, 8), binaryAscii("a") }, 8), { "a" } },
        { "a count of eight bytes", binaryList({ binaryArray({ 1 }), binaryAscii(std::string(20, 'b')) }),
            { std::string(20, 'b') } },
        { "the first and the last character of each length in UTF-8",
            binaryList(
                { binaryArray({ 1 }), binaryUtf16(u"\x7F\x80\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF") }),
            { "\x7F\u0080\u07FF\u0800\uD7FF\uE000\uFFFF\U00010000\U0010FFFF" } },
        { "objects that nothing names are not looked at", binaryList({ binaryArray({ 2 }), "\xFF", binaryAscii("a") }),
            { "a" } },
        { "one string fifteen times",
            binaryList({ binaryArray(std::vector<std::uint64_t>(15, 1)), binaryAscii(sixty) }), Strings(15, sixty) },
    });
}

TEST(PropertyList, BinaryListOfAnotherFormIsUnreadable)
{
    auto const one = [](std::string const& object) { return binaryList({ binaryArray({ 1 }), object }); };
    expectUnreadable({
        { "dictionary as root", bytesFromHex(dictionary) },
        { "string as root", bytesFromHex(bareString) },
        { "number as member", bytesFromHex(stringAndNumber) },
        { "data as member", bytesFromHex(stringAndData) },
        { "array as member", bytesFromHex(arrayInArray) },
        { "the array as its own member", binaryList({ binaryArray({ 0 }) }) },
        { "set as root", binaryList({ "\xC1\x01", binaryAscii("a") }) },
        { "another version", "bplist15" + bytesFromHex(twoNames).substr(8) },
        { "bytes before the mark", " " + bytesFromHex(twoNames) },
        { "bytes after the trailer", bytesFromHex(twoNames) + " " },
        { "a member without an object", binaryList({ binaryArray({ 2 }), binaryAscii("a") }) },
        { "fewer members than announced", binaryList({ "\xAE\x01", binaryAscii("a") }) },
        { "a byte that is not ASCII", one(binaryAscii("a\x80")) },
        { "a leading surrogate alone", one(binaryUtf16(u"a\xD83D")) },
        { "a leading surrogate before another character",
            one(binaryUtf16(u"\xD83D"
                            u"a")) },
        { "two leading surrogates", one(binaryUtf16(u"\xD83D\xD83D")) },
        { "a trailing surrogate alone", one(binaryUtf16(u"a\xDE00")) },
        { "surrogates in the wrong order", one(binaryUtf16(u"\xDE00\xD83D")) },
        { "a string longer than the objects",
            one("\x5E"
                "abc") },
        { "a string in UTF-16 longer than the objects", one(std::string("\x62\0a\0", 4)) },
        { "a count that is no number",
            one("\x5F\x51"
                "a") },
        { "a count without its number", one("\x5F") },
        { "a count cut short", one("\x5F\x11\x01") },
        { "a count of sixteen bytes", one("\x5F\x14" + bigEndian(1, 16) + "a") },
        { "the greatest count", one("\x5F\x13" + std::string(8, '\xFF') + "a") },
        { "a count whose double is small", one("\x6F\x13\x80" + std::string(7, '\0') + "ab") },
        { "a count whose eightfold is small",
            binaryList({ "\xAF\x13\x20" + std::string(7, '\0') + bigEndian(1, 8), binaryAscii("a") }, 8) },
    });
}

TEST(PropertyList, BinaryTrailerThatPointsElsewhereIsUnreadable)
{
    auto const objects = binaryArray({ 1 }) + binaryAscii("a");
    auto const make = [&](BinaryTrailer const& trailer) {
        return "bplist00" + objects + bigEndian(8, 4) + bigEndian(10, 4) + trailer.bytes();
    };
    auto constexpr greatest = std::numeric_limits<std::uint64_t>::max();
    BinaryTrailer const right { 4, 1, 2, 0, 8 + objects.size() };
    ASSERT_EQ(stringArrayFromPropertyList(make(right)), Strings { "a" });

    auto const with = [&](auto change) {
        auto trailer = right;
        change(trailer);
        return make(trailer);
    };
    expectUnreadable({
        { "the mark alone", "bplist00" },
        { "half a trailer", "bplist00" + std::string(16, '\0') },
        { "the mark as part of the trailer", "bplist00" + std::string(24, '\1') },
        { "a trailer of zeros", "bplist00" + std::string(32, '\0') },
        { "a trailer of ones", "bplist00" + std::string(32, '\xFF') },
        { "no offset size", with([](auto& trailer) { trailer.offsetSize = 0; }) },
        { "a great offset size", with([](auto& trailer) { trailer.offsetSize = 9; }) },
        { "no reference size", with([](auto& trailer) { trailer.referenceSize = 0; }) },
        { "a great reference size", with([](auto& trailer) { trailer.referenceSize = 255; }) },
        { "no objects", with([](auto& trailer) { trailer.objectCount = 0; }) },
        { "too few objects", with([](auto& trailer) { trailer.objectCount = 1; }) },
        { "too many objects", with([](auto& trailer) { trailer.objectCount = 3; }) },
        { "the greatest number of objects", with([](auto& trailer) { trailer.objectCount = greatest; }) },
        { "objects whose offsets overflow", with([](auto& trailer) { trailer.objectCount = greatest / 4 + 3; }) },
        { "a root that is the string", with([](auto& trailer) { trailer.root = 1; }) },
        { "a root past the objects", with([](auto& trailer) { trailer.root = 2; }) },
        { "the greatest root", with([](auto& trailer) { trailer.root = greatest; }) },
        { "a table inside the mark", with([](auto& trailer) { trailer.tableOffset = 7; }) },
        { "a table in the trailer", with([](auto& trailer) { trailer.tableOffset += 9; }) },
        { "a table past the end", with([](auto& trailer) { trailer.tableOffset = 4096; }) },
        { "the greatest table offset", with([](auto& trailer) { trailer.tableOffset = greatest; }) },
        { "an object inside the mark", "bplist00" + objects + bigEndian(7, 4) + bigEndian(10, 4) + right.bytes() },
        { "an object inside the table", "bplist00" + objects + bigEndian(8, 4) + bigEndian(12, 4) + right.bytes() },
        { "an object past the end", "bplist00" + objects + bigEndian(8, 4) + bigEndian(0xFFFFFFFF, 4) + right.bytes() },
    });
}

TEST(PropertyList, ExternalEntityIsNeverLoaded)
{
    auto const path = testing::TempDir() + "marrowick-property-list-entity";
    std::ofstream(path) << "secret";
    auto const doctype = "<!DOCTYPE plist [<!ENTITY a SYSTEM 'file://" + path + "'>]>";
    auto const parameter = "<!DOCTYPE plist [<!ENTITY % a SYSTEM 'file://" + path + "'> %a;]>";
    EXPECT_EQ(stringArrayFromPropertyList(doctype + list("<string>&a;</string>")), std::nullopt);
    EXPECT_EQ(stringArrayFromPropertyList(parameter + list("<string>a</string>")), std::nullopt);
    std::ofstream(path) << "<!ENTITY a 'secret'>";
    auto const subset = "<!DOCTYPE plist SYSTEM 'file://" + path + "'>";
    EXPECT_EQ(stringArrayFromPropertyList(subset + list("<string>&a;</string>")), std::nullopt);
    std::remove(path.c_str());
}

}
}
