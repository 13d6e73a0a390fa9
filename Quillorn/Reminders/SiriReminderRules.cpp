#include "Reminders/SiriReminderRules.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/Tag.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <fmt/core.h>
#include <fmt/ranges.h>
#include <map>
#include <set>

namespace quillorn::SiriReminderRules {

namespace {

constexpr std::size_t detailLength = 80;

std::string detailOf(const Project& project) {
    std::string detail = project.projectDescription().value_or("");
    std::replace(detail.begin(), detail.end(), '\n', ' ');
    return std::string(characterPrefix(detail, detailLength));
}

/// A label for each path: the path itself for the first, and one with a number, which no other has, for a later one.
/// The word for none is nobody's.
std::vector<std::string> labelsOf(const std::vector<std::string>& paths) {
    std::set<std::string> taken(paths.begin(), paths.end());
    taken.insert(std::string(noLabel));
    std::map<std::string, int> occurrences{{std::string(noLabel), 1}};
    std::vector<std::string> labels;
    for (const std::string& path : paths) {
        int& number = ++occurrences[path];
        std::string label = path;
        if (number > 1)
            while (!taken.insert(label = fmt::format("{} ({})", path, number)).second)
                ++number;
        labels.push_back(std::move(label));
    }
    return labels;
}

/// What a name is compared by.
std::string tagKey(std::string_view name, const Text& text) {
    name = trimBlanks(name);
    if (name.starts_with('#'))
        name = trimBlanks(name.substr(1));
    return text.folded(name);
}

} // namespace

std::string projectPath(std::string_view name, std::string_view clientName) {
    return clientName.empty() ? std::string(name) : fmt::format("{} › {}", clientName, name);
}

std::string projectPath(const Project& project) {
    return projectPath(project.name(), project.client() ? project.client()->name() : "");
}

std::vector<const Project*> activeProjects(ModelContext& context) {
    std::vector<const Project*> active;
    for (const Project* project : context.fetch<Project>())
        if (!project->isHidden())
            active.push_back(project);
    return active;
}

std::vector<Candidate> candidates(std::span<const Project* const> activeProjects) {
    std::vector<std::string> paths;
    for (const Project* project : activeProjects)
        paths.push_back(projectPath(*project));
    std::vector<std::string> labels = labelsOf(paths);
    std::vector<Candidate> found;
    found.reserve(activeProjects.size());
    for (std::size_t i = 0; i < activeProjects.size(); ++i)
        found.push_back({activeProjects[i]->id(), std::move(labels[i]), detailOf(*activeProjects[i])});
    return found;
}

std::optional<std::string> composeNote(std::string_view note, std::span<const std::string> urls) {
    std::string text(trimWhitespaceAndNewlines(note));
    for (const std::string& url : urls)
        if (text.empty())
            text = url;
        else if (text.find(url) == std::string::npos)
            text += '\n' + url;
    return text.empty() ? std::nullopt : std::optional(text);
}

TagMatch matchTags(std::vector<std::string> requested, std::span<Tag* const> existing, const Text& text) {
    std::map<std::string, Tag*> byKey; // of several of one name the first
    for (Tag* tag : existing)
        byKey.emplace(tagKey(tag->name(), text), tag);
    std::sort(requested.begin(), requested.end());
    TagMatch match;
    for (std::string& name : requested) {
        const auto found = byKey.find(tagKey(name, text));
        if (found == byKey.end())
            match.missing.push_back(std::move(name));
        else if (std::find(match.matched.begin(), match.matched.end(), found->second) == match.matched.end())
            match.matched.push_back(found->second);
    }
    return match;
}

std::string spokenList(std::span<const std::string> words) {
    if (words.size() < 2)
        return words.empty() ? std::string() : words.front();
    return fmt::format("{} or {}", fmt::join(words.first(words.size() - 1), ", "), words.back());
}

} // namespace quillorn::SiriReminderRules
