#pragma once

#include "Platform/UUID.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillorn {

class ModelContext;
class Project;
class Tag;
class Text;

/// The rules of what people say to the program.
namespace SiriReminderRules {

/// A project that a spoken reminder may be filed into.
struct Candidate {
    UUID id{};
    /// Like that of no other one in the same request.
    std::string label{};
    std::string detail{};

    bool operator==(const Candidate&) const = default;
};

/// What the model answers when no project fits.
inline constexpr std::string_view noLabel = "None";

/// "Client › Project", or the name alone without a client.
std::string projectPath(std::string_view name, std::string_view clientName);
std::string projectPath(const Project& project);
/// Those that are not archived, and whose client is not.
std::vector<const Project*> activeProjects(ModelContext& context);
std::vector<Candidate> candidates(std::span<const Project* const> activeProjects);
/// The note, and under it each URL that is not in it; absent when there is nothing.
std::optional<std::string> composeNote(std::string_view note, std::span<const std::string> urls);
struct TagMatch {
    std::vector<Tag*> matched;
    /// As they were asked for.
    std::vector<std::string> missing;
};
/// The tags of those names, whatever their case and accents, with or without "#". None is made.
TagMatch matchTags(std::vector<std::string> requested, std::span<Tag* const> existing, const Text& text);
/// "a", "a or b", "a, b or c".
std::string spokenList(std::span<const std::string> words);

} // namespace SiriReminderRules

} // namespace quillorn
