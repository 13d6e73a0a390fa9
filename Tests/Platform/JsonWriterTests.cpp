#include "Platform/Json.h"

#include <gtest/gtest.h>
#include <limits>

namespace quillorn {
namespace {

std::string quoted(std::string_view text) {
    std::string out;
    JsonWriter writer([&](std::string_view piece) { out += piece; }, Json::Style::compact);
    writer.string(text);
    writer.finish();
    return out;
}

TEST(JsonWriter, keepsTheOrderOfTheCalls) {
    std::string text;
    JsonWriter writer([&](std::string_view piece) { text += piece; });
    writer.beginObject();
    writer.key("z");
    writer.integer(std::numeric_limits<std::int64_t>::min());
    writer.key("a");
    writer.value(Json::Array{"x", Json::Object{}});
    writer.key("n");
    writer.number(0.1);
    writer.endObject();
    writer.finish();
    EXPECT_EQ(text, "{\n  \"z\": -9223372036854775808,\n  \"a\": [\n    \"x\",\n    {}\n  ],\n  \"n\": 0.1\n}");
}

TEST(JsonWriter, putsTheReplacementCharacterForMalformedBytes) {
    const struct {
        const char* text;
        const char* written;
    } cases[] = {
        {"plain", "\"plain\""},
        {"é€😀", "\"é€😀\""},
        {"a\xFFz", "\"a\uFFFDz\""},
        {"\xC3", "\"\uFFFD\""},
        {"\xF0\x9F\x98", "\"\uFFFD\""},
        {"\xF0\x9F\x98z\n", "\"\uFFFDz\\n\""},
        {"\xC0\xAF", "\"\uFFFD\uFFFD\""},
        {"\xED\xA0\x80", "\"\uFFFD\uFFFD\uFFFD\""},
        {"\xF4\x90\x80\x80", "\"\uFFFD\uFFFD\uFFFD\uFFFD\""},
        {"\x80\"\\", "\"\uFFFD\\\"\\\\\""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(quoted(c.text), c.written);
}

TEST(JsonWriter, refusesNumbersThatAreNotFinite) {
    JsonWriter writer([](std::string_view) {});
    EXPECT_THROW(writer.number(std::numeric_limits<double>::infinity()), JsonError);
    EXPECT_THROW(writer.number(std::numeric_limits<double>::quiet_NaN()), JsonError);
}

TEST(JsonWriter, handsOverPiecesWhileItWrites) {
    std::string text;
    std::size_t pieces = 0;
    std::size_t biggest = 0;
    JsonWriter writer([&](std::string_view piece) {
        text += piece;
        ++pieces;
        biggest = std::max(biggest, piece.size());
    });
    Json::Array expected;
    writer.beginArray();
    // Lengths around the size of the buffer hit each of its edges.
    for (const std::size_t length : {0u, 1u, 65'534u, 65'535u, 65'536u, 200'000u, 7u}) {
        expected.emplace_back(std::string(length, 'x') + "\n\xC3\xA9");
        writer.string(*expected.back().asString());
    }
    for (int i = 0; i < 40'000; ++i) {
        expected.emplace_back(i);
        writer.integer(i);
    }
    writer.endArray();
    EXPECT_GE(pieces, 8u);
    const std::size_t before = text.size();
    writer.finish();
    EXPECT_GT(text.size(), before);
    EXPECT_LE(biggest, 64u * 1024);
    EXPECT_EQ(Json::parse(text), Json(expected));
}

TEST(JsonWriter, sinkMayThrowAndNothingIsWrittenAfterwardsWithoutFinish) {
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

TEST(JsonWriter, deepListsAreIndented) {
    std::string text;
    JsonWriter writer([&](std::string_view piece) { text += piece; });
    for (int i = 0; i < 300; ++i)
        writer.beginArray();
    for (int i = 0; i < 300; ++i)
        writer.endArray();
    writer.finish();
    EXPECT_NE(text.find("\n" + std::string(598, ' ') + "[]\n"), std::string::npos);
}

} // namespace
} // namespace quillorn
