#include "Platform/Json.h"

#include "Support/ScopedLimit.h"

#include <bit>
#include <cmath>
#include <fstream>
#include <gmock/gmock.h>
#include <limits>
#include <random>
#include <unistd.h>

using namespace std::string_literals;
using testing::HasSubstr;
using testing::ThrowsMessage;

namespace quillorn {
namespace {

using Integers = std::numeric_limits<std::int64_t>;
using Doubles = std::numeric_limits<double>;

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

TEST(Json, readsValues) {
    // clang-format off
    const std::pair<std::string, Json> cases[] = {
        {"null", nullptr}, {" true\n", true}, {"false", false}, {"0", 0}, {"-0", 0}, {"-7", -7},
        {"-9223372036854775808", Integers::min()},
        {"9223372036854775808", 9223372036854775808.0},
        {"-9223372036854775809", -9223372036854775809.0},
        {"1.0", 1.0}, {"1e2", 100.0}, {"1e-400", 0.0}, {"0.1", 0.1},
        {"1.7976931348623157e308", Doubles::max()},
        // Numbers as long as anybody may send them.
        {"0." + std::string(100'000, '0') + "1", 0.0},
        {"0.1" + std::string(100'000, '0'), 0.1},
        {R"("")", ""}, {R"("\u0000x")", "\0x"s}, {R"("\u00e9\ud83d\ude00")", "é😀"}, {"\"é😀\"", "é😀"},
        {R"("a\"\\\/\b\f\n\r\tz")", "a\"\\/\b\f\n\r\tz"},
        {"[]", Json::Array{}},
        {"[1,[2],{}]", Json::Array{1, Json::Array{2}, Json::Object{}}},
        {R"({"b":1,"a":{"c":null}})", Json::Object{{"a", Json::Object{{"c", nullptr}}}, {"b", 1}}},
        {R"({"a":1,"a":2})", Json::Object{{"a", 2}}},
    };
    // clang-format on
    for (const auto& [text, value] : cases)
        EXPECT_EQ(Json::parse(text), value) << text.substr(0, 40);
}

TEST(Json, faultsNameTheirPlace) {
    // clang-format off
    const std::pair<std::string, const char*> cases[] = {
        {"", "line 1, column 1"}, {"  ", "empty"}, {"[1,\n  x]", "line 2, column 3"}, {"[1,]", "line 1, column"},
        {"1 2", "column 3"}, {"1\0 2"s, "column 2"}, {"[1]\0"s, "column 4"}, {"{\"a\":1,}", "column"},
        {"{a:1}", "column 2"}, {"'a'", "column 1"}, {"\"a", "column"}, {"\"a\nb\"", "column"}, {"\"\\x\"", "column"},
        {R"("\ud800")", "surrogate"}, {R"("\ud800\u0041")", "surrogate"},
        {R"("\udc00")", "UTF-8"}, {R"({"\udc00":1})", "UTF-8"}, {"\"\xFF\"", "UTF-8"}, {"\"\xC0\xAF\"", "UTF-8"},
        {"\"\xED\xA0\x80\"", "UTF-8"}, {"{\"\xE2\x82\":1}", "UTF-8"}, {"\xEF\xBB\xBF[]", "column 1"},
        {"01", "column 2"}, {"+1", "column 1"}, {"1.", "column"}, {".5", "column 1"}, {"NaN", "column 1"},
        {"1e999", "too big"}, {"1.8e308", "too big"}, {std::string(400, '9'), "too big"},
        {"// no comments\n1", "column 1"}, {std::string(1'000'000, '['), "too deep"},
    };
    // clang-format on
    for (const auto& [text, part] : cases) {
        const auto parse = [&text = text] { Json::parse(text); };
        EXPECT_THAT(parse, ThrowsMessage<JsonError>(HasSubstr(part))) << text.substr(0, 40);
    }
}

TEST(Json, depthLimitCountsOpenContainers) {
    EXPECT_NO_THROW(Json::parse(nested(512)));
    EXPECT_THROW(Json::parse(nested(513)), JsonError);
    EXPECT_NO_THROW(Json::parse(R"({"a":[1]})", 2));
    EXPECT_THROW(Json::parse(R"({"a":[1]})", 1), JsonError);
    EXPECT_NO_THROW(Json::parse("1", 0));
    EXPECT_THROW(Json::parse("[]", 0), JsonError);
}

TEST(Json, writesSortedKeysAndShortEscapes) {
    const Json value = Json::Object{{"z", Json::Array{1, -2.5, 3600.0, true, nullptr}},
                                    {"empty", Json::Object{}},
                                    {"list", Json::Array{}},
                                    {"a", "q\"\\\b\f\n\r\t\x01\x1F/é"}};
    EXPECT_EQ(value.text(),
              R"({"a":"q\"\\\b\f\n\r\t\u0001\u001F/é","empty":{},"list":[],"z":[1,-2.5,3600.0,true,null]})");
}

TEST(Json, writingRefusesWhatJsonCannotSay) {
    for (const double number : {Doubles::infinity(), -Doubles::infinity(), Doubles::quiet_NaN()}) {
        EXPECT_THROW(Json(number).text(), JsonError);
        EXPECT_THROW(JsonWriter([](std::string_view) {}).number(number), JsonError);
    }
    for (const Json& value : {Json("\xFF"), Json(Json::Object{{"\xC3", 1}}), Json(Json::Array{"a\xED\xA0\x80"})})
        EXPECT_THROW(value.text(), JsonError);
}

/// Any value that JSON can say, down to a few levels.
Json randomValue(std::mt19937_64& random, int depth) {
    const auto pick = [&](std::uint64_t count) { return static_cast<std::int64_t>(random() % count); };
    const auto text = [&] {
        constexpr const char* pieces[] = {"a", "\"", "\\", "\n", "é", "😀", "\x01", " ", "/", "\u2028", "zz"};
        std::string result;
        for (auto i = pick(6); i > 0; --i)
            result += pieces[pick(std::size(pieces))];
        return result;
    };
    const auto kind = pick(depth > 0 ? 8 : 6);
    if (kind == 0)
        return pick(3) == 0 ? Json() : Json(pick(2) == 0);
    if (kind < 3)
        return static_cast<std::int64_t>(random()) >> pick(64);
    if (const double value = std::bit_cast<double>(random()); kind == 3)
        return std::isfinite(value) ? value : 0.5;
    if (kind == 4)
        return double(pick(1'000'000)) / 100;
    if (kind == 5)
        return text();
    Json::Array array;
    Json::Object object;
    for (auto i = pick(5); i > 0; --i) {
        if (kind == 6)
            array.push_back(randomValue(random, depth - 1));
        else
            object[text()] = randomValue(random, depth - 1);
    }
    return kind == 6 ? Json(array) : Json(object);
}

TEST(Json, everyValueSurvivesTextAndBack) {
    std::mt19937_64 random(20260115);
    for (int i = 0; i < 3000; ++i) {
        const Json value = randomValue(random, 5);
        for (const auto style : {Json::Style::compact, Json::Style::pretty})
            EXPECT_EQ(Json::parse(value.text(style)), value) << value.text();
    }
}

/// What comes out of a writer, in the pieces that it promises.
std::string written(const std::function<void(JsonWriter&)>& write, Json::Style style = Json::Style::pretty) {
    std::string text;
    const auto sink = [&](std::string_view piece) {
        EXPECT_LE(piece.size(), 64u * 1024);
        text += piece;
    };
    JsonWriter writer(sink, style);
    write(writer);
    writer.finish();
    return text;
}

TEST(Json, wantOfMemoryIsAnError) {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    if (isSanitized || pages == 0)
        GTEST_SKIP() << "memory can't be bounded here";
    const std::string text = '"' + std::string(64 << 20, 'x') + '"';
    const ScopedLimit memory(RLIMIT_AS, pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) + (96 << 20));
    EXPECT_THROW(Json::parse(text), std::bad_alloc);
}

TEST(JsonWriter, putsTheReplacementCharacterForMalformedBytes) {
    // clang-format off
    const std::pair<const char*, const char*> cases[] = {
        {"é€😀", "\"é€😀\""}, {"a\xFFz", "\"a\uFFFDz\""}, {"\xC3", "\"\uFFFD\""}, {"\xF0\x9F\x98", "\"\uFFFD\""},
        {"\xF0\x9F\x98z\n", "\"\uFFFDz\\n\""}, {"\xC0\xAF", "\"\uFFFD\uFFFD\""},
        {"\xED\xA0\x80", "\"\uFFFD\uFFFD\uFFFD\""}, {"\xF4\x90\x80\x80", "\"\uFFFD\uFFFD\uFFFD\uFFFD\""},
        {"\x80\"\\", "\"\uFFFD\\\"\\\\\""},
    };
    // clang-format on
    for (const auto& [text, expected] : cases) {
        const auto write = [&text = text](JsonWriter& writer) { writer.string(text); };
        EXPECT_EQ(written(write, Json::Style::compact), expected);
    }
}

TEST(JsonWriter, escapesAtEveryPlaceOfAText) {
    // What readers take back is what was meant, and they refuse a control character that stands as it is.
    for (const std::string special : {"\"", "\\", "\n", "\x1f", "\x01", "\x20", "\x21", "\x7f", "\xc3\xa9"})
        for (std::size_t before = 0; before < 20; ++before)
            for (std::size_t after = 0; after < 20; ++after) {
                const std::string text = std::string(before, 'a') + special + std::string(after, '~') + special;
                EXPECT_EQ(Json::parse(jsonText([&](JsonWriter& writer) { writer.string(text); })), Json(text));
            }
}

TEST(JsonWriter, writesAsItGoesAndNothingBehindASinkThatThrew) {
    int calls = 0;
    {
        JsonWriter writer([&](std::string_view) {
            ++calls;
            throw std::runtime_error("gone");
        });
        writer.beginArray();
        EXPECT_THROW(writer.string(std::string(100'000, 'x')), std::runtime_error);
        writer.string("more");
    }
    EXPECT_EQ(calls, 1);
}

TEST(JsonWriter, losesNothingBetweenItsPieces) {
    Json::Array expected;
    // Lengths around the size of the buffer hit each of its edges.
    for (const std::size_t length : {0u, 1u, 65'534u, 65'535u, 65'536u, 200'000u, 7u})
        expected.emplace_back(std::string(length, 'x') + "\n\xC3\xA9");
    for (int i = 0; i < 40'000; ++i)
        expected.emplace_back(i);
    EXPECT_EQ(Json::parse(written([&](JsonWriter& writer) { writer.value(expected); })), Json(expected));
}

} // namespace
} // namespace quillorn
