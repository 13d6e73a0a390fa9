#pragma once

#include "AI/ChatEngine.h"
#include "Models/Enums.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// The conversation with a model about a project or a client: keeps it, sends, shows the answer while it grows, and
/// stops it. Belongs to the main thread.
class AIChatView {
  public:
    AIChatView(const AIEnvironment& environment, const ChatContext& context);
    ~AIChatView() = default;
    static constexpr std::string_view summaryButton = "AI Summary";
    static constexpr std::string_view clearButton = "Clear Chat";
    static constexpr std::string_view dismissButton = "Dismiss";
    static constexpr std::string_view settingsButton = "Open AI Settings…";
    static constexpr std::string_view answerLabel = "Answer";
    static constexpr std::string_view copyButton = "Copy for Outlook";
    static constexpr std::string_view copiedLabel = "Copied";

    AIChatView(const AIChatView&) = delete;
    AIChatView& operator=(const AIChatView&) = delete;

    /// Told when anything that the screen shows changes, records apart.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    struct Message {
        UUID id;
        ChatRole role;
        std::string content;
        Date createdAt;
    };
    /// Oldest first; the one that is being answered shows what has come so far.
    std::vector<Message> messages() const;

    const std::string& inputText() const { return m_inputText; }
    void setInputText(std::string text);
    const std::string& streamingContent() const { return m_streamingContent; }
    const std::optional<UUID>& streamingMessageID() const { return m_streamingMessageID; }
    const std::optional<std::string>& error() const { return m_error; }
    bool isStreaming() const { return m_engine.isStreaming(); }
    bool isConfigured() const;
    bool showRangePicker() const { return m_showRangePicker; }
    void setShowRangePicker(bool shows);

    /// What is shown beneath the messages while there is nothing of the answer yet.
    std::optional<std::string> statusText() const;
    /// In the empty input field.
    std::string_view prompt() const;
    /// Above the input while there is no model to ask.
    std::optional<std::string_view> banner() const;
    /// In place of messages, where there are none.
    std::string emptyTitle() const;
    /// Questions on offer; none once there are messages, or without a model.
    std::vector<std::string_view> suggestions() const;

    struct SendButton {
        std::string_view symbol, label;
        bool isEnabled;
    };
    SendButton sendButton() const;

    void send();
    void sendSuggestion(std::string_view suggestion);
    /// A report of those days, as an answer in the conversation.
    void generateSummary(const DayRange& range);
    /// Ends the answer that is coming; what has come is kept.
    void stop();
    void dismissError();
    /// Leads the settings window to its tab.
    void openSettings();

    struct Confirmation {
        std::string_view title;
        std::string text;
        std::string_view action = "Clear";
    };
    Confirmation clearConfirmation() const;
    /// Deletes the conversation.
    void clear();

    /// The message as HTML for a mail, for the pasteboard; empty where it is gone. "Copied" is shown at it for a
    /// moment.
    std::string copyForOutlook(const UUID& message);
    const std::optional<UUID>& copiedMessageID() const { return m_copiedMessageID; }

  private:
    std::vector<ChatMessage*> rows() const;
    ChatSubject subject() const;
    bool insert(ChatRole role, std::string content);
    bool beginReply(const std::string& userText);
    static Task<> consume(AIChatView& view, AnswerStream<std::string> stream, std::optional<std::string> fallback);
    static Task<> flushSoon(AIChatView& view);
    static Task<> forgetCopied(AIChatView& view);
    void receive(const std::string& text);
    void flush();
    /// The end of an answer that came whole or was stopped.
    void finishReply(bool wasStopped);
    void failReply(const std::string& words, const std::optional<std::string>& fallback);
    void settleReply(bool keepsEmpty);
    void save();

    AIEnvironment m_environment;
    ChatContext m_context;
    std::string m_inputText;
    std::string m_streamingContent;
    std::string m_streamingBuffer; // received and not yet shown
    std::optional<UUID> m_streamingMessageID;
    std::optional<std::string> m_error;
    std::optional<UUID> m_copiedMessageID;
    bool m_showRangePicker = false;
    Observers<> m_observers;
    ChatEngine m_engine;
    Observation m_engineChanges;
    // Gone before the engine, as they hold its streams.
    TaskScope m_consumeTask;
    TaskScope m_flushTask;
    TaskScope m_copiedTask;
};

} // namespace quillorn
