#include "AI/ChatStreamReader.h"

#include "AI/ChatChunk.h"
#include "Platform/Json.h"

#include <utility>

namespace quillorn {

namespace {

constexpr std::string_view prefix = "data: ";
constexpr std::string_view terminator = "[DONE]";

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

} // namespace

bool ChatStreamReader::read(std::string_view line) {
    if (!line.starts_with(prefix))
        return true;
    line.remove_prefix(prefix.size());
    if (withoutBlanks(line) == terminator)
        return false;
    try {
        take(ChatChunk::parse(line));
    } catch (const JsonError&) {
        // Not for us; the next line may be.
    }
    return true;
}

void ChatStreamReader::take(ChatChunk chunk) {
    if (chunk.finishReason)
        m_asksForTools = *chunk.finishReason == "tool_calls";
    if (chunk.text)
        m_sink(TextDelta{std::move(*chunk.text)});
    for (ToolCallDelta& call : chunk.calls)
        m_sink(std::move(call));
}

void ChatStreamReader::finish() {
    m_sink(Finished{m_asksForTools ? FinishReason::toolCalls : FinishReason::stop});
}

} // namespace quillorn
