#include "AI/ChatStreamReader.h"
#include "AI/JsonExtraction.h"
#include "AI/ReportHTML.h"

#include <fmt/core.h>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

/// The events in short: T(text), C(index,id,name,arguments) and the reason of the end.
std::string eventsOf(const std::vector<std::string>& lines) {
    std::string events;
    ChatStreamReader reader([&](const StreamEvent& event) {
        if (const auto* text = std::get_if<TextDelta>(&event))
            events += fmt::format("T({}) ", text->text);
        else if (const auto* call = std::get_if<ToolCallDelta>(&event))
            events += fmt::format("C({},{},{},{}) ", call->index, call->id.value_or("-"), call->name.value_or("-"),
                                  call->argumentsChunk.value_or("-"));
        else
            events += std::get<Finished>(event).reason == FinishReason::stop ? "stop" : "toolCalls";
    });
    for (const std::string& line : lines)
        if (!reader.read(line))
            break;
    reader.finish();
    return events;
}

std::string choice(const std::string& members) {
    return R"(data: {"choices":[{)" + members + "}]}";
}
std::string content(const std::string& text) {
    return choice(R"("delta":{"content":")" + text + "\"}");
}

TEST(ChatStream, linesBecomeEvents) {
    const std::string calls = R"("tool_calls":[{"index":3,"id":"a","function":{"name":"n","arguments":"{"}},{"id":7}])";
    const std::string asked = choice(R"("finish_reason":"tool_calls","delta":{})");
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        // clang-format off
        {{}, "stop"}, {{content("Hi"), "", ": ping", "event: x", content(""), content("!")}, "T(Hi) T() T(!) stop"},
        {{content("a"), "data: [DONE]", content("b")}, "T(a) stop"}, {{"data:  [DONE] \t", content("b")}, "stop"},
        {{"data:[DONE]", content("b"), "data:{}", "DATA: {}", "data:"}, "T(b) stop"},
        {{choice(R"("delta":{"content":null,)" + calls + "}")}, "C(3,a,n,{) C(0,-,-,-) stop"},
        {{choice(R"("delta":{"content":"x",)" + calls + "}")}, "T(x) C(3,a,n,{) C(0,-,-,-) stop"},
        {{choice(R"("delta":{"tool_calls":[{"index":1.5,"function":{"name":2}},{"index":-9223372036854775808}]})")}, "C(0,-,-,-) C(-9223372036854775808,-,-,-) stop"},
        {{choice(R"("delta":{"tool_calls":[{"index":1},2]})"), choice(R"("delta":{"tool_calls":{}})"), choice(R"("delta":[])"), choice("")}, "stop"},
        {{asked, choice(R"("finish_reason":null)")}, "toolCalls"}, {{asked, choice(R"("finish_reason":"length")")}, "stop"},
        {{choice(R"("delta":{"tool_calls":[{"id":"a"}]},"finish_reason":"stop")")}, "C(0,a,-,-) stop"}, {{asked, "data: [DONE]"}, "toolCalls"},
        // None of it is an error.
        {{"data: {", "data: []", "data: null", "data: {}", R"(data: {"choices":[]})", R"(data: {"choices":{}})", R"(data: {"choices":[{},1]})", "data: "}, "stop"},
        {{content("\xFF"), content("\\ud800"), "data: " + std::string(1'000'000, '['), content("ok")}, "T(ok) stop"},
        {{R"(data: {"choices":[{"delta":{"content":"1"}},{"delta":{"content":"2"}}]})"}, "T(1) stop"},
        // clang-format on
    };
    for (const auto& [lines, expected] : cases)
        EXPECT_EQ(eventsOf(lines), expected);
}

TEST(JsonExtraction, findsTheObject) {
    const std::pair<const char*, const char*> cases[] = {
        // clang-format off
        {"{\"a\":1}", "{\"a\":1}"}, {"Here it is:\n```json\n{\"a\":1}\n```\nAnything else?", "{\"a\":1}"}, {"```{}```", "{}"},
        {"Sure! {\"a\":{\"b\":2}} {is that fine?", "{\"a\":{\"b\":2}}"}, {"```\nno\n``` {\"a\":1}", ""}, {"```json {\"a\":1}", "{\"a\":1}"},
        {"{\"a\":1} and {\"b\":2}", ""}, {"}{", ""}, {"[1]", ""}, {"", ""}, {"{\"a\":\"\xFF\"}", ""}, {"[{\"a\":1}]", "{\"a\":1}"},
        // clang-format on
    };
    for (const auto& [answer, expected] : cases) {
        const auto object = extractJsonObject(answer);
        EXPECT_EQ(object ? object->text() : "", expected) << answer;
    }
}

TEST(ReportHTML, marksBecomeTags) {
    const std::pair<const char*, const char*> cases[] = {
        // clang-format off
        {"", ""}, {" \n\r\n", ""}, {"**Acme**", "<p><b>Acme</b></p>"}, {"a<b & c", "<p>a&lt;b &amp; c</p>"}, {"&lt;\"x\"", "<p>&amp;lt;\"x\"</p>"},
        {"- Built X\n  ◦ Decided Y\n\nEnd", "<ul><li>Built X<ul><li>Decided Y</li></ul></li></ul><p>End</p>"},
        {"* a\r\n• b\n-c", "<ul><li>a</li><li>b</li><li>c</li></ul>"}, {"◦ a\n‣b\n- c", "<ul><li><ul><li>a</li><li>b</li></ul></li><li>c</li></ul>"},
        {"- a\n· b\n· **c**\nText\n- d", "<ul><li>a<ul><li>b</li><li><b>c</b></li></ul></li></ul><p>Text</p><ul><li>d</li></ul>"},
        {"- **Bold** start", "<ul><li><b>Bold</b> start</li></ul>"}, {"**Two** and **é**", "<p><b>Two</b> and <b>é</b></p>"},
        {"****a** b ** c", "<p><b>**a</b> b ** c</p>"}, {"**", "<p>**</p>"}, {"-", "<ul><li></li></ul>"}, {"<script>", "<p>&lt;script&gt;</p>"},
        // clang-format on
    };
    for (const auto& [report, expected] : cases)
        EXPECT_EQ(reportHTML(report),
                  fmt::format(R"(<div style="font-family:Calibri,Helvetica,Arial,sans-serif;font-size:11pt">{}</div>)",
                              expected));
}

} // namespace
} // namespace quillorn
