#pragma once

#include "Models/Project.h"

namespace quillorn {

class ModelContext;
class Text;

/// Which projects a listing shows; an absent condition does not restrict.
struct ProjectSearch {
    /// Otherwise archived projects, and those of archived clients, are left out.
    bool includeArchived = false;
    /// Contained in the name, without regard to case.
    std::optional<std::string> name{};
    std::optional<UUID> clientId{};
};

/// The projects that match, by name. `text` compares in the user's locale.
std::vector<Project*> findProjects(ModelContext& context, const ProjectSearch& search, const Text& text);

} // namespace quillorn
