#include "AI/ChatStreamReader.h"
#include "Fuzz/Harness.h"
#include "Platform/Text.h"

#include <sstream>

using namespace quillorn;

std::vector<std::string> quillorn::seeds() {
    return {
        R"(data: {"choices":[{"delta":{"content":"Hi"}}]})"
        "\n\n: ping\ndata: [DONE]\n",
        R"(data: {"choices":[{"finish_reason":"tool_calls","delta":{"content":null,"tool_calls":[{"index":0,"id":"a",)"
        R"("function":{"name":"list_tasks","arguments":"{}"}}]}}]})"
        "\n"};
}

/// Whatever the lines hold: events of valid texts, no more of them than the lines have room for, and one end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::size_t events = 0;
    bool isFinished = false;
    ChatStreamReader reader([&](const StreamEvent& event) {
        require(!isFinished, "something follows the end");
        isFinished = std::holds_alternative<Finished>(event);
        const auto* delta = std::get_if<TextDelta>(&event);
        require(delta == nullptr || isValidUTF8(delta->text), "text that is none");
        require(++events <= size + 1, "more events than input");
    });
    std::istringstream lines{std::string(bytesOf(data, size))};
    for (std::string line; std::getline(lines, line) && reader.read(line);) {
    }
    reader.finish();
    require(isFinished, "no end");
    return 0;
}
