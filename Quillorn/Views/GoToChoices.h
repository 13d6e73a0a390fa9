#pragma once

#include "Views/ViewEnvironment.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// A place to go to.
struct GoToChoice {
    /// "client", "project", "tag", "task", "note", or the key of a smart list.
    std::string kind;
    /// Empty for a smart list.
    std::string record;
    std::string title;
    /// What it is, and where it belongs.
    std::string subtitle;
    std::string_view symbol;

    friend bool operator==(const GoToChoice&, const GoToChoice&) = default;
};

inline constexpr std::string_view goToPrompt = "Go to a list, client, project, tag, task or note";
inline constexpr std::string_view goToNothing = "Nothing has that name";

/// The places whose name holds the text, no more of a kind than fit: lists, clients, projects and tags, open tasks,
/// and notes. All lists and some of the others where nothing is searched for.
std::vector<GoToChoice> goToChoices(const ViewEnvironment& environment, std::string_view search);

} // namespace quillorn
