#pragma once

#include "Platform/UUID.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class ModelContext;
class Note;
class Project;
class ProjectDivider;
class Client;
class ProjectTask;
class Tag;
class Text;
class TimeEntry;

/// What a user typed names no record, or several; in words for the user, which list them.
class RecordChoiceError : public std::runtime_error {
  public:
    /// `matches` are the lines of the list.
    RecordChoiceError(std::string_view word, std::string_view typed, const std::vector<std::string>& matches);

    /// The same without what was typed, for messages that begin with it.
    const std::string& reason() const { return m_reason; }

  private:
    std::string m_reason;
};

/// The record that a user means: by its id, by its name, by the beginning of its id (four characters or more) or by a
/// part of its name, whichever fits first, without regard to case. An archived client or project, or a completed task,
/// is meant only where no other fits as well. Throws RecordChoiceError.
Project& chooseProject(ModelContext& context, std::string_view typed, const Text& text);
Client& chooseClient(ModelContext& context, std::string_view typed, const Text& text);
ProjectTask& chooseTask(ModelContext& context, std::string_view typed, const Text& text);
Tag& chooseTag(ModelContext& context, std::string_view typed, const Text& text);
/// A group of projects.
ProjectDivider& chooseGroup(ModelContext& context, std::string_view typed, const Text& text);
/// By its heading in lists; a comment on a task only where no other note fits as well.
Note& chooseNote(ModelContext& context, std::string_view typed, const Text& text);
/// By its name in lists; one that is over only where none that runs fits as well.
TimeEntry& chooseTimeEntry(ModelContext& context, std::string_view typed, const Text& text);

} // namespace quillorn
