#pragma once

#include "Platform/UUID.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class ModelContext;
class Project;
class Client;
class ProjectTask;
class Text;

/// What a user typed names no record, or several; in words for the user, which list them.
class RecordChoiceError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The record that a user means: by its id, by its name, by the beginning of its id (four characters or more) or by a
/// part of its name, whichever fits first; case is ignored where nothing fits exactly. An archived client or project,
/// or a completed task, is meant only where no other fits as well. Throws RecordChoiceError.
Project& chooseProject(ModelContext& context, std::string_view typed, const Text& text);
Client& chooseClient(ModelContext& context, std::string_view typed, const Text& text);
ProjectTask& chooseTask(ModelContext& context, std::string_view typed, const Text& text);

} // namespace quillorn
