#pragma once

#include "AI/StreamEvent.h"
#include "Platform/Json.h"
#include "Platform/Sequence.h"
#include "Platform/Task.h"

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class HttpClient;
struct HttpCall;
class SettingsStore;

/// An answer that comes piece by piece. The server is left when this object goes.
template <typename Piece>
class AnswerStream {
  public:
    AnswerStream(Sequence<Piece> pieces, std::shared_ptr<void> source)
        : m_pieces(std::move(pieces)),
          m_source(std::move(source)) {}
    AnswerStream(const AnswerStream&) = delete;
    AnswerStream& operator=(const AnswerStream&) = delete;
    AnswerStream(AnswerStream&&) noexcept = default;
    AnswerStream& operator=(AnswerStream&&) noexcept = default;
    ~AnswerStream() = default;

    /// `co_await stream.next()`: a piece, or nothing at the end. Throws AIServiceError, HttpFailure or JsonError, the
    /// last for messages that JSON can't say.
    auto next() const { return m_pieces.next(); }

  private:
    Sequence<Piece> m_pieces;
    std::shared_ptr<void> m_source;
};

/// The one client of the language model's server, by the wire that OpenAI made common. Keeps no conversation, and reads
/// its settings for every call, so that a change holds from the next one on. Belongs to the main thread.
class AIService {
  public:
    AIService(HttpClient& client, SettingsStore& settings);

    /// Whether an answer is just coming.
    bool isStreaming() const { return *m_streams > 0; }

    /// The text of the answer alone. Messages are objects with role and content.
    AnswerStream<std::string> streamChat(Json::Array messages);
    /// The last event is Finished. The model may ask for `tools` where there are any.
    AnswerStream<StreamEvent> streamChatWithTools(Json::Array messages, Json::Array tools = {});
    /// The whole text of the answer. Throws as the streams do.
    Task<std::string> completeChat(Json::Array messages, std::chrono::seconds timeout);

    /// Sorted ids.
    Task<std::vector<std::string>> fetchModels();
    /// A sentence that begins with "Connected". Throws when there is no connection.
    Task<std::string> testConnection();

    /// Whether there is enough to make a call; a key isn't needed.
    static bool isConfigured(std::string_view endpoint, std::string_view model);
    /// The same for the settings in force.
    static bool isConfigured(SettingsStore& settings);

  private:
    class Source;
    struct Answer {
        int status = 0;
        std::string body;
    };

    HttpCall call(std::string_view path, std::chrono::seconds timeout) const;
    HttpCall chatCall(Json::Array messages, Json::Array tools, bool streams, std::chrono::seconds timeout) const;
    std::shared_ptr<void> open(Json::Array messages, Json::Array tools, std::function<void(StreamEvent)> deliver,
                               std::function<void(std::exception_ptr)> end);
    Task<Answer> send(HttpCall call, bool readsErrors);
    Task<std::string> modelList();

    HttpClient& m_client;
    SettingsStore& m_settings;
    std::shared_ptr<int> m_streams = std::make_shared<int>(0);
};

} // namespace quillorn
