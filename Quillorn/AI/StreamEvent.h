#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace quillorn {

enum class FinishReason { stop, toolCalls };

/// A piece of the assistant's text.
struct TextDelta {
    std::string text;
    bool operator==(const TextDelta&) const = default;
};

/// A fragment of one tool call, with as much of it as came at once.
struct ToolCallDelta {
    std::int64_t index = 0;
    std::optional<std::string> id;
    std::optional<std::string> name;
    std::optional<std::string> argumentsChunk;
    bool operator==(const ToolCallDelta&) const = default;
};

/// The end of the answer.
struct Finished {
    FinishReason reason;
    bool operator==(const Finished&) const = default;
};

using StreamEvent = std::variant<TextDelta, ToolCallDelta, Finished>;

} // namespace quillorn
