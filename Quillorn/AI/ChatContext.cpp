#include "AI/ChatContext.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Platform/Calendar.h"
#include "Store/ModelContext.h"

#include <fmt/core.h>

namespace quillorn {

ChatContext ChatContext::of(const Project& project) {
    return {Kind::project, project.id()};
}

ChatContext ChatContext::of(const Client& client) {
    return {Kind::client, client.id()};
}

ChatSubject ChatSubject::find(ModelContext& context, const ChatContext& chat) {
    if (chat.kind == ChatContext::Kind::project)
        return {context.find<Project>(chat.id), nullptr};
    return {nullptr, context.find<Client>(chat.id)};
}

std::string ChatSubject::name() const {
    return project != nullptr ? project->name() : client != nullptr ? client->name() : std::string();
}

std::string ChatSubject::systemPrompt(Date now, const Calendar& calendar) const {
    const auto described = [](const char* lead, const std::optional<std::string>& description) {
        return description && !description->empty() ? fmt::format(" {} description: {}", lead, *description)
                                                    : std::string();
    };
    std::string prompt;
    if (project != nullptr) {
        prompt = fmt::format("You are an AI assistant for the project '{}'.", project->name()) +
                 described("Project", project->projectDescription()) +
                 " Use the available tools to look up tasks, notes, time entries, and other project data when needed.";
    } else if (client != nullptr) {
        const std::size_t count = client->activeProjectCount();
        prompt = fmt::format("You are an AI assistant for the client '{}' which has {} active project{}.",
                             client->name(), count, count == 1 ? "" : "s") +
                 described("Client", client->clientDescription()) +
                 " Use the available tools to look up data across their projects.";
    }
    return prompt + fmt::format(" Today is {}.", calendar.format(now, "MMMM d, yyyy"));
}

} // namespace quillorn
