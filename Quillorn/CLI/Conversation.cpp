#include "CLI/Conversation.h"

#include "AI/AIEnvironment.h"
#include "Models/Client.h"
#include "Models/Project.h"
#include "Platform/Terminal.h"
#include "Records/RecordChoice.h"

#include <cstdio>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

ChatContext subjectOf(Session& session, const ChatSubjectOptions& options) {
    ModelContext& context = session.app().mainContext();
    if (options.project)
        return ChatContext::of(chooseProject(context, *options.project, session.text()));
    return ChatContext::of(chooseClient(context, options.client.value_or(""), session.text()));
}

} // namespace

Conversation::Conversation(Session& session, const ChatSubjectOptions& options)
    : m_session(session),
      m_view(session.app().aiEnvironment(), subjectOf(session, options)) {}

void Conversation::stop() {
    m_session.mainQueue().post([this] { m_view.stop(); });
}

void Conversation::await(const std::function<void(AIChatView&)>& begin, bool showsText) {
    if (!m_view.isConfigured())
        throw std::runtime_error("Configure an AI provider in Settings to use AI chat: set aiEndpoint and aiModel");
    m_shown = 0;
    m_endsLine = true;
    {
        ProgressLine progress;
        bool isWaiting = false;
        const auto isOver = [&] { return !m_view.isStreaming() && !m_view.streamingMessageID(); };
        const Observation news = m_view.observe([&] {
            showNews(showsText, progress);
            if (isWaiting && isOver())
                m_session.mainQueue().stop();
        });
        begin(m_view);
        isWaiting = !isOver();
        if (isWaiting)
            m_session.mainQueue().run();
    }
    if (!m_endsLine)
        fmt::print("\n");
    (void)std::fflush(stdout);
    m_session.saveChanges();
    if (m_view.error())
        throw std::runtime_error(*m_view.error());
}

void Conversation::showNews(bool showsText, ProgressLine& progress) {
    const std::string& content = m_view.streamingContent();
    progress.show(m_view.statusText().value_or(""));
    if (!showsText || content.size() <= m_shown)
        return;
    fmt::print("{}", textFor(stdout, std::string_view(content).substr(m_shown), LineEnds::kept));
    (void)std::fflush(stdout);
    m_shown = content.size();
    m_endsLine = content.ends_with('\n');
}

} // namespace quillorn
