#pragma once

#include "AI/StreamEvent.h"

#include <functional>
#include <string>
#include <string_view>

namespace quillorn {

struct ChatChunk;

/// Makes events of the lines of a chat completion's stream. Lines that say nothing we know are passed over, whatever
/// they hold: a malformed one never ends a stream.
class ChatStreamReader {
  public:
    using Sink = std::function<void(StreamEvent)>;

    explicit ChatStreamReader(Sink sink) : m_sink(std::move(sink)) {}

    /// Gives the events of one line, without its end, to the sink. False where it is the last one.
    bool read(std::string_view line);
    /// Gives the last event. The server's word for the reason may have come in any of the lines.
    void finish();

  private:
    void take(ChatChunk chunk);

    Sink m_sink;
    bool m_asksForTools = false;
};

} // namespace quillorn
