#include "Platform/Terminal.h"

#include "Platform/DisplayWidth.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

TEST(Terminal, countsTheCellsOfTexts) {
    struct Case {
        const char* text;
        std::size_t width;
        const char* inFour;
    };
    for (const auto& [text, width, inFour] : {Case{"", 0, ""},
                                              {"abcd", 4, "abcd"},
                                              {"abcde", 5, "abc…"},
                                              {"größer", 6, "grö…"},
                                              {"e\u0301te\u0301", 3, "e\u0301te\u0301"},
                                              {"日本語", 6, "日…"},
                                              {"👩‍👩‍👧!", 3, "👩‍👩‍👧!"},
                                              {"✔\uFE0F ok", 5, "✔\uFE0F …"},
                                              {"🇩🇪🇫🇷", 4, "🇩🇪🇫🇷"}}) {
        EXPECT_EQ(displayWidth(text), width) << text;
        EXPECT_EQ(fittedToWidth(text, 4), inFour) << text;
    }
    EXPECT_EQ(fittedToWidth("ab", 0), "");
}

TEST(Terminal, showsControlCharactersInsteadOfObeyingThem) {
    const struct {
        std::string_view text;
        const char *oneLine, *lines;
    } cases[] = {
        {"plain ü 字 👩‍💻", "plain ü 字 👩‍💻", "plain ü 字 👩‍💻"},
        {"a\nb\r\tc", "a\\nb\\u000D\\tc", "a\nb\\u000D\\tc"},
        {{"\0\x1B[2J\x1F \x7F", 7}, "\\u0000\\u001B[2J\\u001F ", "\\u0000\\u001B[2J\\u001F "},
        {"~\x7F\xC2\x80\xC2\x9F\xC2\xA0", "~\\u007F\\u0080\\u009F\xC2\xA0", "~\\u007F\\u0080\\u009F\xC2\xA0"},
        {"\x9B"
         "2J\xC2",
         "\xEF\xBF\xBD"
         "2J\xEF\xBF\xBD",
         "\xEF\xBF\xBD"
         "2J\xEF\xBF\xBD"},
    };
    for (const auto& [text, oneLine, lines] : cases) {
        EXPECT_EQ(escapeControls(text), oneLine);
        EXPECT_EQ(escapeControls(text, LineEnds::kept), lines);
    }
}

} // namespace
} // namespace quillorn
