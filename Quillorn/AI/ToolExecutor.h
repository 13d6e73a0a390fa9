#pragma once

#include "AI/ChatContext.h"
#include "Platform/Json.h"

#include <string>
#include <string_view>

namespace quillorn {

class Calendar;
class Clock;
class ModelContainer;
class Text;

/// The model's sight of the store: what a chat is about, and nothing else. Its tools read the saved state and write
/// nothing.
class ToolExecutor {
  public:
    /// The world that tools see. Referred to, not owned.
    struct Environment {
        ModelContainer& container;
        const Clock& clock;
        const Calendar& calendar;
        const Text& text;
    };

    ToolExecutor(const Environment& environment, const ChatContext& chat) : m_environment(environment), m_chat(chat) {}

    /// The result as JSON text. Never fails: what goes wrong is said to the model in the result.
    std::string execute(std::string_view name, std::string_view argumentsText) const;

    /// What the model is told of the tools.
    static Json::Array definitions();

  private:
    Environment m_environment;
    ChatContext m_chat;
};

} // namespace quillorn
