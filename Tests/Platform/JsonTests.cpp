#include "Platform/Json.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace std::string_literals;

namespace quillorn {
namespace {

constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

TEST(Json, readsValues) {
    const struct {
        std::string text;
        Json value;
    } cases[] = {
        {"null", nullptr},
        {" true\n", true},
        {"false", false},
        {"0", 0},
        {"-0", 0},
        {"-7", -7},
        {"9223372036854775807", largest},
        {"-9223372036854775808", smallest},
        {"9223372036854775808", 9223372036854775808.0},
        {"18446744073709551615", 18446744073709551615.0},
        {"-9223372036854775809", -9223372036854775809.0},
        {"1.0", 1.0},
        {"1e2", 100.0},
        {"1e-400", 0.0},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
        {"0.1", 0.1},
        {R"("")", ""},
        {R"("a\"\\\/\b\f\n\r\tz")", "a\"\\/\b\f\n\r\tz"},
        {R"("\u0000x")", "\0x"s},
        {R"("\u00e9\ud83d\ude00")", "é😀"},
        {"\"é😀\"", "é😀"},
        {"[]", Json::Array{}},
        {"[1,[2],{}]", Json::Array{1, Json::Array{2}, Json::Object{}}},
        {R"({"b":1,"a":{"c":null}})", Json::Object{{"a", Json::Object{{"c", nullptr}}}, {"b", 1}}},
        {R"({"a":1,"a":2})", Json::Object{{"a", 2}}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Json::parse(c.text), c.value) << c.text;
}

TEST(Json, keepsTrueOneAndOnePointZeroApart) {
    EXPECT_NE(Json(true), Json(1));
    EXPECT_NE(Json(1), Json(1.0));
    EXPECT_EQ(Json(true).asInteger(), nullptr);
    EXPECT_EQ(Json(1).asDouble(), nullptr);
}

TEST(Json, faultsNameTheirPlace) {
    const struct {
        std::string text;
        const char* part;
    } cases[] = {
        {"", "line 1, column 1"},
        {"  ", "empty"},
        {"[1,\n  x]", "line 2, column 3"},
        {"[1,]", "line 1, column"},
        {"1 2", "column 3"},
        {"1\0 2"s, "column 2"},
        {"[1]\0"s, "column 4"},
        {"{\"a\":1,}", "column"},
        {"{a:1}", "column 2"},
        {"'a'", "column 1"},
        {"\"a", "column"},
        {"\"a\nb\"", "column"},
        {"\"\\x\"", "column"},
        {R"("\ud800")", "surrogate"},
        {R"("\ud800\u0041")", "surrogate"},
        {R"("\udc00")", "UTF-8"},
        {R"({"\udc00":1})", "UTF-8"},
        {"\"\xFF\"", "UTF-8"},
        {"\"\xC0\xAF\"", "UTF-8"},
        {"\"\xED\xA0\x80\"", "UTF-8"},
        {"{\"\xE2\x82\":1}", "UTF-8"},
        {"\xEF\xBB\xBF[]", "column 1"},
        {"01", "column 2"},
        {"+1", "column 1"},
        {"1.", "column"},
        {".5", "column 1"},
        {"NaN", "column 1"},
        {"1e999", "too big"},
        {"1.8e308", "too big"},
        {std::string(400, '9'), "too big"},
        {"// no comments\n1", "column 1"},
        {std::string(1'000'000, '['), "too deep"},
    };
    for (const auto& c : cases) {
        try {
            Json::parse(c.text);
            ADD_FAILURE() << "accepted " << c.text;
        } catch (const JsonError& error) {
            EXPECT_NE(std::string(error.what()).find(c.part), std::string::npos) << error.what();
        }
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

TEST(Json, longNumbersKeepTheirValueAndDoNotCrash) {
    const struct {
        std::string text;
        double value;
    } cases[] = {
        {"0." + std::string(100'000, '0') + "1", 0.0},
        {"0." + std::string(400, '0') + "1e401", 1.0},
        {"1" + std::string(300, '0') + ".0", 1e300},
        {"0.1" + std::string(100'000, '0'), 0.1},
        {"2.2250738585072011e-308", 2.2250738585072011e-308},
        {"9007199254740993.0", 9007199254740992.0},
        {"1e-999999999999999999999", 0.0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Json::parse(c.text), Json(c.value)) << c.text.substr(0, 40);
}

TEST(Json, findAnswersForObjectsOnly) {
    const Json object = Json::Object{{"a", 1}};
    ASSERT_NE(object.find("a"), nullptr);
    EXPECT_EQ(*object.find("a"), Json(1));
    EXPECT_EQ(object.find("b"), nullptr);
    EXPECT_EQ(Json(Json::Array{}).find("a"), nullptr);
}

TEST(Json, writesCompactAndPretty) {
    const Json value = Json::Object{{"z", Json::Array{1, -2.5, 3600.0, true, nullptr}},
                                    {"empty", Json::Object{}},
                                    {"list", Json::Array{}},
                                    {"a", "q\"\\\b\f\n\r\t\x01\x1F/é"}};
    EXPECT_EQ(value.text(),
              R"({"a":"q\"\\\b\f\n\r\t\u0001\u001F/é","empty":{},"list":[],"z":[1,-2.5,3600.0,true,null]})");
    EXPECT_EQ(value.text(Json::Style::pretty), R"({
  "a": "q\"\\\b\f\n\r\t\u0001\u001F/é",
  "empty": {},
  "list": [],
  "z": [
    1,
    -2.5,
    3600.0,
    true,
    null
  ]
})");
}

TEST(Json, writingRefusesWhatJsonCannotSay) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    for (const Json& value : {Json(infinity), Json(-infinity), Json(notANumber), Json("\xFF"),
                              Json(Json::Object{{"\xC3", 1}}), Json(Json::Array{"a\xED\xA0\x80"})})
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
    switch (pick(depth > 0 ? 8 : 6)) {
    case 0:
        return nullptr;
    case 1:
        return pick(2) == 0;
    case 2:
        return static_cast<std::int64_t>(random()) >> pick(64);
    case 3: {
        const double value = std::bit_cast<double>(random());
        return std::isfinite(value) ? value : 0.5;
    }
    case 4:
        return double(pick(1'000'000)) / 100;
    case 5:
        return text();
    case 6: {
        Json::Array array;
        for (auto i = pick(5); i > 0; --i)
            array.push_back(randomValue(random, depth - 1));
        return array;
    }
    default: {
        Json::Object object;
        for (auto i = pick(5); i > 0; --i)
            object[text()] = randomValue(random, depth - 1);
        return object;
    }
    }
}

TEST(Json, everyValueSurvivesTextAndBack) {
    std::mt19937_64 random(20260115);
    for (int i = 0; i < 3000; ++i) {
        const Json value = randomValue(random, 5);
        EXPECT_EQ(Json::parse(value.text()), value) << value.text();
        EXPECT_EQ(Json::parse(value.text(Json::Style::pretty)), value) << value.text();
    }
}

TEST(Json, damagedTextIsReadOrRefusedNeverMore) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 3000; ++i) {
        std::string text = randomValue(random, 4).text();
        for (auto damage = random() % 4; damage > 0; --damage)
            text[random() % text.size()] = static_cast<char>(random());
        try {
            const Json value = Json::parse(text.substr(0, random() % 4 == 0 ? random() % text.size() : text.size()));
            EXPECT_EQ(Json::parse(value.text()), value);
        } catch (const JsonError&) {
        }
    }
}

} // namespace
} // namespace quillorn
