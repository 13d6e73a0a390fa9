#pragma once

#include "AI/StreamEvent.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// What a chunk of a chat completion's stream says in its first choice. What has another shape than expected is absent.
struct ChatChunk {
    std::optional<std::string> finishReason;
    std::optional<std::string> text;
    std::vector<ToolCallDelta> calls;

    /// Throws JsonError. Most of a chunk is not for us and comes with every word of an answer, so it is never kept.
    static ChatChunk parse(std::string_view json);
};

} // namespace quillorn
