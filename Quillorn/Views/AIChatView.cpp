#include "Views/AIChatView.h"

#include "AI/ReportHTML.h"
#include "Models/ChatMessage.h"
#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/Settings.h"
#include "Platform/Background.h"
#include "Platform/Clock.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"
#include "Store/StoreError.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

using std::chrono::milliseconds;

/// However fast the text comes, the screen changes at most twelve times a second.
constexpr milliseconds flushInterval{80};
constexpr milliseconds copiedTime{2'000};

constexpr std::string_view notConfigured = "Configure an AI provider in Settings to use AI chat.";

constexpr std::array<std::string_view, 3> projectSuggestions = {
    "Summarize this project's status", "What tasks should I prioritize?", "How is my time distributed?"};
constexpr std::array<std::string_view, 3> clientSuggestions = {"Summarize all project statuses",
                                                               "Which project needs the most attention?",
                                                               "How is time distributed across projects?"};

std::string withBlanks(std::string name) {
    std::ranges::replace(name, '_', ' ');
    return name;
}

} // namespace

AIChatView::AIChatView(const AIEnvironment& environment, const ChatContext& context)
    : m_environment(environment),
      m_context(context),
      m_engine(environment),
      m_engineChanges(m_engine.observe([this] { m_observers.tell(); })) {}

ChatSubject AIChatView::subject() const {
    return ChatSubject::find(m_environment.mainContext, m_context);
}

std::vector<ChatMessage*> AIChatView::rows() const {
    const ChatSubject subject = this->subject();
    if (!subject.exists())
        return {};
    const auto& all = subject.project != nullptr ? subject.project->chatMessages() : subject.client->chatMessages();
    std::vector<ChatMessage*> rows(all.begin(), all.end());
    std::ranges::stable_sort(rows, {}, [](const ChatMessage* row) { return std::pair(row->createdAt(), row->key()); });
    return rows;
}

std::vector<AIChatView::Message> AIChatView::messages() const {
    std::vector<Message> messages;
    for (const ChatMessage* row : rows())
        if (row->role() != ChatRole::system)
            messages.push_back({row->id(), row->role(),
                                row->id() == m_streamingMessageID ? m_streamingContent : row->content(),
                                row->createdAt()});
    return messages;
}

void AIChatView::setInputText(std::string text) {
    m_inputText = std::move(text);
    m_observers.tell();
}

void AIChatView::setShowRangePicker(bool shows) {
    m_showRangePicker = shows;
    m_observers.tell();
}

bool AIChatView::isConfigured() const {
    return AIService::isConfigured(m_environment.settings);
}

std::optional<std::string> AIChatView::statusText() const {
    const ChatEnginePhase phase = m_engine.currentPhase();
    const bool hasText = m_streamingMessageID && !m_streamingContent.empty();
    if (hasText || (phase != ChatEnginePhase::thinking && phase != ChatEnginePhase::callingTools))
        return std::nullopt;
    if (phase == ChatEnginePhase::thinking)
        return "Thinking…";
    if (const auto& tool = m_engine.activeTool())
        return fmt::format("Looking up: {}…", withBlanks(*tool));
    return "Looking up data…";
}

std::string_view AIChatView::prompt() const {
    if (!isConfigured())
        return "Configure an AI provider in Settings first";
    return m_context.kind == ChatContext::Kind::project ? "Ask about this project..." : "Ask about this client...";
}

std::optional<std::string_view> AIChatView::banner() const {
    return isConfigured() ? std::nullopt : std::optional(notConfigured);
}

std::string AIChatView::emptyTitle() const {
    return "Ask AI about " + subject().name();
}

std::vector<std::string_view> AIChatView::suggestions() const {
    if (!isConfigured() || !messages().empty())
        return {};
    const auto& all = m_context.kind == ChatContext::Kind::project ? projectSuggestions : clientSuggestions;
    return {all.begin(), all.end()};
}

AIChatView::SendButton AIChatView::sendButton() const {
    if (isStreaming())
        return {"stop.circle.fill", "Stop response", true};
    return {"arrow.up.circle.fill", "Send message", !trimWhitespaceAndNewlines(m_inputText).empty()};
}

void AIChatView::send() {
    const std::string text(trimWhitespaceAndNewlines(m_inputText));
    if (!isConfigured() || text.empty() || isStreaming())
        return;
    std::vector<ChatMessage*> earlier = rows();
    std::erase_if(earlier, [](const ChatMessage* row) { return row->role() == ChatRole::system; });
    m_error.reset();
    if (!beginReply(text))
        return;
    m_inputText.clear();
    m_consumeTask.start(consume(*this, m_engine.sendMessage(text, earlier, m_context), text));
}

void AIChatView::sendSuggestion(std::string_view suggestion) {
    m_inputText = suggestion;
    send();
}

void AIChatView::generateSummary(const DayRange& range) {
    if (!isConfigured() || isStreaming())
        return;
    m_error.reset();
    const std::string label = rangeLabel(range, m_environment.clock.now(), m_environment.calendar);
    if (beginReply("Generate a summary for " + label))
        m_consumeTask.start(consume(*this, m_engine.generateSummary(range, m_context), std::nullopt));
}

bool AIChatView::insert(ChatRole role, std::string content) {
    const ChatSubject subject = this->subject();
    if (!subject.exists()) {
        m_error = "What this conversation is about is no longer there";
        m_observers.tell();
        return false;
    }
    const auto& message = m_environment.mainContext.insert<ChatMessage>(
        ChatMessage::Arguments{
            .role = role, .content = std::move(content), .project = subject.project, .client = subject.client},
        m_environment.clock.now());
    m_streamingMessageID = message.id();
    save();
    return true;
}

/// Adds what the user says and an empty answer, which is the one that streams from then on.
bool AIChatView::beginReply(const std::string& userText) {
    m_streamingContent.clear();
    return insert(ChatRole::user, userText) && insert(ChatRole::assistant, "");
}

Task<> AIChatView::consume(AIChatView& view, AnswerStream<std::string> stream, std::optional<std::string> fallback) {
    std::optional<std::string> failure;
    try {
        for (auto text = co_await stream.next(); text; text = co_await stream.next()) {
            view.receive(*text);
            if (!view.m_streamingMessageID)
                co_return; // stopped by somebody who was told of the text
        }
    } catch (const std::exception& error) {
        failure = error.what();
    }
    if (failure)
        view.failReply(*failure, fallback);
    else
        view.finishReply(false);
}

void AIChatView::receive(const std::string& text) {
    m_streamingBuffer += text;
    if (m_flushTask.isIdle())
        m_flushTask.start(flushSoon(*this));
}

Task<> AIChatView::flushSoon(AIChatView& view) {
    Pause pause(view.m_environment.mainQueue, flushInterval);
    co_await pause;
    view.flush();
}

void AIChatView::flush() {
    if (m_streamingBuffer.empty())
        return;
    m_streamingContent += m_streamingBuffer;
    m_streamingBuffer.clear();
    m_observers.tell();
}

void AIChatView::stop() {
    if (!m_streamingMessageID)
        return;
    m_engine.stop();
    m_consumeTask.cancel();
    finishReply(true);
}

void AIChatView::finishReply(bool wasStopped) {
    m_flushTask.cancel();
    flush();
    settleReply(!wasStopped);
}

void AIChatView::failReply(const std::string& words, const std::optional<std::string>& fallback) {
    m_flushTask.cancel();
    flush();
    m_error = words;
    if (m_streamingContent.empty() && fallback && m_inputText.empty())
        m_inputText = *fallback;
    settleReply(false);
}

/// What has come becomes the content of the answer; an empty one goes where it must not stay.
void AIChatView::settleReply(bool keepsEmpty) {
    auto* row = m_streamingMessageID ? m_environment.mainContext.find<ChatMessage>(*m_streamingMessageID) : nullptr;
    if (row != nullptr && m_streamingContent.empty() && !keepsEmpty)
        m_environment.mainContext.remove(*row);
    else if (row != nullptr)
        row->setContent(m_streamingContent);
    save();
    m_streamingMessageID.reset();
    m_streamingContent.clear();
    m_observers.tell();
}

void AIChatView::dismissError() {
    m_error.reset();
    m_observers.tell();
}

void AIChatView::openSettings() {
    Settings(m_environment.settings).set(setting("settingsTab"), "ai");
}

AIChatView::Confirmation AIChatView::clearConfirmation() const {
    return {"Clear Chat?",
            fmt::format("This deletes all {} messages in this conversation. This can’t be undone.", messages().size())};
}

void AIChatView::clear() {
    stop();
    for (ChatMessage* row : rows())
        m_environment.mainContext.remove(*row);
    save();
    m_observers.tell();
}

std::string AIChatView::copyForOutlook(const UUID& message) {
    const auto* row = m_environment.mainContext.find<ChatMessage>(message);
    if (row == nullptr)
        return {};
    m_copiedMessageID = message;
    m_copiedTask.cancel();
    m_copiedTask.start(forgetCopied(*this));
    m_observers.tell();
    return reportHTML(row->content());
}

Task<> AIChatView::forgetCopied(AIChatView& view) {
    Pause pause(view.m_environment.mainQueue, copiedTime);
    co_await pause;
    view.m_copiedMessageID.reset();
    view.m_observers.tell();
}

void AIChatView::save() {
    try {
        m_environment.mainContext.save();
    } catch (const StoreError&) {
        // The rows stay in the context, which is saved again before long.
    }
}

} // namespace quillorn
