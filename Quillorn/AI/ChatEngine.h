#pragma once

#include "AI/AIEnvironment.h"
#include "AI/AIService.h"
#include "AI/ChatContext.h"
#include "AI/WorkSummary.h"
#include "Platform/Observers.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillorn {

class ChatMessage;
class ToolExecutor;

enum class ChatEnginePhase { idle, thinking, callingTools, responding };

/// Runs one exchange with the model at a time: sends the conversation, gives on the text of the answer, and runs the
/// tools that the model asks for until it has asked enough. Belongs to the main thread.
class ChatEngine {
  public:
    /// So many requests of an exchange may end in calls of tools; the next one has none to offer.
    static constexpr int maxToolRounds = 15;

    explicit ChatEngine(const AIEnvironment& environment);
    ~ChatEngine() { stop(); }
    ChatEngine(const ChatEngine&) = delete;
    ChatEngine& operator=(const ChatEngine&) = delete;

    bool isStreaming() const { return m_link != nullptr; }
    ChatEnginePhase currentPhase() const { return m_phase; }
    /// The name of the tool that is being asked for or called.
    const std::optional<std::string>& activeTool() const { return m_activeTool; }
    /// Told when one of the three changes.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    /// The answer to `text`, which follows the `earlier` messages, oldest first. The exchange ends with the stream, and
    /// a former one with its beginning.
    AnswerStream<std::string> sendMessage(const std::string& text, const std::vector<ChatMessage*>& earlier,
                                          const ChatContext& chat);
    /// A report of what was done in those days, without the conversation so far.
    AnswerStream<std::string> generateSummary(const DayRange& range, const ChatContext& chat);
    /// Ends the exchange; nothing more comes of its stream.
    void stop();

  private:
    /// What an exchange knows the engine by; null when it has no say any more.
    struct Link {
        ChatEngine* engine;
    };
    struct Exchange;
    struct PendingCall {
        std::string id, name, arguments;
    };
    struct Round {
        std::map<std::int64_t, PendingCall> pending; // by index
        std::string text;
    };
    using LinkPointer = std::shared_ptr<Link>;
    using Texts = Sequence<std::string>;

    template <typename Work>
    AnswerStream<std::string> begin(const Work& work);
    static Task<> answer(LinkPointer link, Texts texts, Task<> work);
    static Task<> converse(LinkPointer link, Texts texts, Json::Array messages, std::shared_ptr<ToolExecutor> tools);
    static Task<> summarise(LinkPointer link, Texts texts, Json::Array messages);
    static Task<> conclude(LinkPointer link, Texts texts, const Json::Array& messages);

    void take(const TextDelta& delta, Round& round);
    void take(const ToolCallDelta& delta, Round& round);
    void runTools(const Round& round, Json::Array& messages, const ToolExecutor& tools);
    ToolExecutor executorFor(const ChatContext& chat) const;
    void saveMainContext();
    void setPhase(ChatEnginePhase phase);
    void setActiveTool(std::optional<std::string> name);

    AIEnvironment m_environment;
    AIService m_service;
    LinkPointer m_link; // of the exchange that runs
    ChatEnginePhase m_phase = ChatEnginePhase::idle;
    std::optional<std::string> m_activeTool;
    Observers<> m_observers;
};

} // namespace quillorn
