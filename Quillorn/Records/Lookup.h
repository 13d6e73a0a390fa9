#pragma once

#include "Store/ModelContext.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillorn {

class Client;
class Note;
class Project;
class ProjectTask;
class Tag;
class TimeEntry;

/// What errors call a record of that type.
template <class Type>
inline constexpr const char* resourceWord = nullptr;
template <>
inline constexpr const char* resourceWord<Client> = "Client";
template <>
inline constexpr const char* resourceWord<Note> = "Note";
template <>
inline constexpr const char* resourceWord<Project> = "Project";
template <>
inline constexpr const char* resourceWord<ProjectTask> = "Task";
template <>
inline constexpr const char* resourceWord<Tag> = "Tag";
template <>
inline constexpr const char* resourceWord<TimeEntry> = "TimeEntry";

/// A record that a request names is not there. Each surface has its own words for it.
class RecordNotFound : public std::runtime_error {
  public:
    RecordNotFound(std::string resource, const UUID& id);

    /// A resourceWord.
    const std::string& resource() const { return m_resource; }
    const UUID& id() const { return m_id; }

  private:
    std::string m_resource;
    UUID m_id;
};

/// The record of that id; throws RecordNotFound when there is none.
template <class Type>
Type& findOrThrow(ModelContext& context, const UUID& id) {
    if (Type* found = context.find<Type>(id))
        return *found;
    throw RecordNotFound(resourceWord<Type>, id);
}

/// The same for a link that a request may leave out; null then.
template <class Type>
Type* findLinked(ModelContext& context, const std::optional<UUID>& id) {
    return id ? &findOrThrow<Type>(context, *id) : nullptr;
}

/// The tags with these ids; ids without a tag are dropped.
std::vector<Tag*> findTags(ModelContext& context, const std::vector<UUID>& ids);

} // namespace quillorn
