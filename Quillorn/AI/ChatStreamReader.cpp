#include "AI/ChatStreamReader.h"

#include "AI/JsonShapes.h"

#include <utility>

namespace quillorn {

namespace {

constexpr std::string_view prefix = "data: ";
constexpr std::string_view terminator = "[DONE]";

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::optional<std::string> textOf(const Json* object, std::string_view key) {
    const Json* value = object != nullptr ? object->find(key) : nullptr;
    const std::string* text = value != nullptr ? value->asString() : nullptr;
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

ToolCallDelta toolCallDelta(const Json& element) {
    const Json* index = element.find("index");
    const std::int64_t* number = index != nullptr ? index->asInteger() : nullptr;
    const Json* function = element.find("function");
    return {number != nullptr ? *number : 0, textOf(&element, "id"), textOf(function, "name"),
            textOf(function, "arguments")};
}

} // namespace

bool ChatStreamReader::read(std::string_view line) {
    if (!line.starts_with(prefix))
        return true;
    line.remove_prefix(prefix.size());
    if (withoutBlanks(line) == terminator)
        return false;
    try {
        const Json chunk = Json::parse(line);
        if (const Json::Array* choices = objectsIn(chunk, "choices"); choices != nullptr && !choices->empty())
            readChoice(choices->front());
    } catch (const JsonError&) {
        // Not for us; the next line may be.
    }
    return true;
}

void ChatStreamReader::readChoice(const Json& choice) {
    if (const auto reason = textOf(&choice, "finish_reason"))
        m_asksForTools = *reason == "tool_calls";
    const Json* delta = choice.find("delta");
    if (delta == nullptr || delta->asObject() == nullptr)
        return;
    if (auto text = textOf(delta, "content"))
        m_sink(TextDelta{std::move(*text)});
    if (const Json::Array* calls = objectsIn(*delta, "tool_calls"))
        for (const Json& call : *calls)
            m_sink(toolCallDelta(call));
}

void ChatStreamReader::finish() {
    m_sink(Finished{m_asksForTools ? FinishReason::toolCalls : FinishReason::stop});
}

} // namespace quillorn
