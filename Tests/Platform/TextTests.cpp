#include "Platform/Text.h"
#include "Platform/UTF8.h"
#include "Support/Threads.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <random>

using namespace std::string_literals;

namespace quillorn {
namespace {

TEST(Text, containsIgnoresCaseAndCompositionButNotAccents) {
    struct Case {
        const char *text, *part;
        bool expected;
        const char* locale = "en_US";
    };
    // clang-format off
    const Case cases[] = {
        {"Write the Report", "the rep", true}, {"Write the Report", "report!", false}, {"ab", "longer than it", false},
        {"straße", "STRASSE", true}, {"STRASSE", "straße", true}, {"Hauptstraße 5", "RASSE 5", true},
        {"Re\u0301sume\u0301", "RÉSUMÉ", true}, {"résumé", "Re\u0301sum", true}, {"ΟΔΥΣΣΕΥΣ", "οδυσσευς", true},
        {"", "", false}, {"text", "", false}, {"", "a", false},
        {"TITLE", "title", true}, {"TITLE", "title", false, "tr_TR"}, {"TITLE", "tıtle", true, "tr_TR"},
        {"İstanbul", "istanbul", true, "tr_TR"}, {"TITLE", "tıtle", true, "az"}, {"TITLE", "tıtle", false, "de_DE"},
        {"THE QUICK BROWN FOX {[@`AZaz~", "the quick brown fox {[@`azaz~", true},
        {"a long cafe\u0301, and more ÀÉ of it", "CAFÉ, AND MORE àé OF", true}, {"@@@@@@@@", "`", false},
        {"\xFFx", "\uFFFDX", true}, {"report", "é", false}, {"\U0001F600", "\U0001F601", false},
    };
    // clang-format on
    for (const auto& c : cases) {
        const Text text(c.locale);
        const bool isInKey = text.searchKey(c.text).find(text.searchKey(c.part)) != std::string::npos;
        for (const bool found : {text.contains(c.text, c.part), *c.part != 0 && isInKey})
            EXPECT_EQ(found, c.expected) << c.text << " | " << c.part << " | " << c.locale;
    }
}

TEST(Text, comparesAsAFileListDoes) {
    const char* ordered[] = {"",      "_a",       "a",      "A",      "co-op",  "coop",   "e\u0301", "é",     "file002",
                             "file2", "file002x", "file10", "résumé", "RÉSUMÉ", "Straße", "zebra1",  "Zebra2"};
    const Text text("en_US");
    for (std::size_t i = 0; i < std::size(ordered); ++i)
        for (std::size_t j = 0; j < std::size(ordered); ++j) {
            const int order = text.compare(ordered[i], ordered[j]);
            EXPECT_EQ((order > 0) - (order < 0), (i > j) - (i < j)) << ordered[i] << " | " << ordered[j];
        }
    EXPECT_EQ(text.compareIgnoringCase("file2 A", "FILE2 a"), 0);
    EXPECT_LT(text.compareIgnoringCase("e", "É"), 0);
    EXPECT_LT(text.compareIgnoringCase("B10", "b9"), 0);
}

TEST(Text, takesTheNamesOfTheEnvironment) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "en_US"},           {"C", "en_US"},           {"POSIX", "en_US"},
        {"C.UTF-8", "en_US"},    {"C.utf8", "en_US"},      {"fr", "fr"},
        {"de_DE@euro", "de_DE"}, {"de_DE.UTF-8", "de_DE"}, {"pt_BR.UTF-8", "pt_BR"},
        {"tr_TR", "tr_TR"},      {"\xFF..@", "en_US"},     {"sr_RS.UTF-8@latin", "sr_Latn_RS"}};
    for (const auto& [name, locale] : cases)
        EXPECT_EQ(Text(name).locale(), locale) << name;
}

TEST(Characters, countWhatPeopleSee) {
    const std::pair<std::string, std::size_t> cases[] = {
        {"", 0},     {"abc", 3},   {"a\r\nb", 3}, {"\r\r\n\n", 3}, {"e\u0301", 1},  {"👨‍👩‍👧‍👦", 1},
        {"🇩🇪🇫🇷", 2}, {"👍🏽x", 2}, {"நி", 1},     {"a\0b"s, 3},    {"\xFF\xFE", 2},
    };
    for (const auto& [text, count] : cases)
        EXPECT_EQ(characterCount(text), count) << text;
}

TEST(Characters, prefixNeverCutsOneApart) {
    // clang-format off
    const std::tuple<std::string, std::size_t, std::string> cases[] = {
        {"abc", 2, "ab"}, {"abc", 3, "abc"}, {"abc", 9, "abc"}, {"abc", 0, ""}, {"", 1, ""}, {"ea", 1, "e"},
        {"ae\u0301x", 2, "ae\u0301"}, {"ae\u0301", 1, "a"}, {"e\u0301a", 1, "e\u0301"}, {"éa", 0, ""},
        {"👨‍👩‍👧‍👦🇩🇪z", 2, "👨‍👩‍👧‍👦🇩🇪"}, {"a\r\nb", 2, "a\r\n"},
    };
    // clang-format on
    for (const auto& [text, count, prefix] : cases)
        EXPECT_EQ(characterPrefix(text, count), prefix) << text << count;
}

TEST(Trimming, knowsBlanksAndLineEnds) {
    const std::array<const char*, 3> cases[] = {
        // clang-format off
        {"", "", ""}, {" \t ", "", ""}, {"  a b\t", "a b", "a b"}, {" \na\r\n ", "\na\r\n", "a"},
        {"\u00A0\u1680\u2000\u200A\u202F\u205F\u3000a\u3000", "a", "a"},
        {"\u2028a\u2029\u0085", "\u2028a\u2029\u0085", "a"}, {"\v\fa", "\v\fa", "a"},
        {"\u200Ba\uFEFF", "\u200Ba\uFEFF", "\u200Ba\uFEFF"}, // no White_Space
        {"é", "é", "é"}, {"\xA0", "\xA0", "\xA0"},
        // clang-format on
    };
    for (const auto& [text, withoutBlanks, withoutBoth] : cases) {
        EXPECT_EQ(trimBlanks(text), withoutBlanks) << text;
        EXPECT_EQ(trimWhitespaceAndNewlines(text), withoutBoth) << text;
    }
}

TEST(UTF8, tellsWellFormedFromMalformed) {
    const std::string everyLength = "\x7F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF";
    // clang-format off
    const std::tuple<std::string, std::size_t, std::string> cases[] = {
        {"", 0, ""}, {"plain text of some length", 25, "plain text of some length"},
        {everyLength, 1 + 2 + 2 + 3 + 3 + 4 + 4, everyLength},
        {"12345678\x80", 8, "12345678\uFFFD"}, {"1234567\xC3\xA9\xC3", 9, "1234567é\uFFFD"},
        {"\xC0\x80", 0, "\uFFFD\uFFFD"}, {"\xE0\x9F\xBF", 0, "\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\x80", 0, "\uFFFD\uFFFD\uFFFD"}, {"\xF0\x8F\xBF\xBF", 0, "\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xF4\x90\x80\x80", 0, "\uFFFD\uFFFD\uFFFD\uFFFD"}, {"\xF5", 0, "\uFFFD"},
        {"\xF0\x9F\x98", 0, "\uFFFD"}, {"a\xE2\x82z", 1, "a\uFFFDz"},
    };
    // clang-format on
    for (const auto& [text, validLength, repaired] : cases) {
        EXPECT_EQ(validUTF8Length(text), validLength) << repaired;
        EXPECT_EQ(isValidUTF8(text), validLength == text.size());
        EXPECT_EQ(repairedUTF8(text), repaired);
    }
}

} // namespace
} // namespace quillorn
