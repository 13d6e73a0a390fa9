#pragma once

#include "Platform/Date.h"
#include "Platform/UUID.h"

#include <optional>
#include <string>

namespace quillorn {

class Calendar;
class Client;
class ModelContext;
class Project;

/// What a chat is about, by id: the record may be gone at any turn of the main queue.
struct ChatContext {
    enum class Kind { project, client };
    Kind kind = Kind::project;
    UUID id;

    static ChatContext of(const Project& project);
    static ChatContext of(const Client& client);
    bool operator==(const ChatContext&) const = default;
};

/// The record that a chat is about, as an object of one context; both null when it is gone.
struct ChatSubject {
    Project* project = nullptr;
    Client* client = nullptr;

    static ChatSubject find(ModelContext& context, const ChatContext& chat);
    bool exists() const { return project != nullptr || client != nullptr; }
    /// Empty where the record is gone.
    std::string name() const;
    /// What the model is told before a conversation.
    std::string systemPrompt(Date now, const Calendar& calendar) const;
};

} // namespace quillorn
