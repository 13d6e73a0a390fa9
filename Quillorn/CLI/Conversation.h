#pragma once

#include "CLI/AICommands.h"
#include "CLI/ProgressLine.h"
#include "CLI/Session.h"
#include "Views/AIChatView.h"

#include <functional>
#include <string>

namespace quillorn {

/// A conversation with the model on standard output: shows the answer as it comes.
class Conversation {
  public:
    /// Throws RecordChoiceError where the options name no one record.
    Conversation(Session& session, const ChatSubjectOptions& options);

    AIChatView& view() { return m_view; }

    /// Runs the main queue until the answer has come or was stopped. `begin` sends what is to be answered. Throws
    /// std::runtime_error with the words of a failure, after what came before it.
    void await(const std::function<void(AIChatView&)>& begin, bool showsText);
    /// Ends the answer that is coming; from any thread.
    void stop();

  private:
    void showNews(bool showsText, ProgressLine& progress);

    Session& m_session;
    AIChatView m_view;
    std::size_t m_shown = 0;
    bool m_endsLine = true;
};

} // namespace quillorn
