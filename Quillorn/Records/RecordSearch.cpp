#include "Records/RecordSearch.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Platform/Text.h"
#include "Store/KeyCondition.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <fmt/ranges.h>

namespace quillorn {

namespace {

using Kind = FoundRecord::Kind;

/// The columns of a table that are searched.
struct Place {
    const EntityType& type;
    std::vector<std::string_view> columns;
};

/// The line of the text that has it, without blanks around it; absent where none has.
std::optional<std::string> lineWith(std::string_view text, const Text::Needle& needle) {
    if (!needle.isIn(text))
        return std::nullopt;
    for (std::string_view rest = text;;) {
        const std::size_t end = rest.find('\n');
        if (needle.isIn(rest.substr(0, end)))
            return std::string(trimWhitespaceAndNewlines(rest.substr(0, end)));
        if (end == std::string_view::npos)
            return std::string(trimWhitespaceAndNewlines(text)); // over the end of a line
        rest.remove_prefix(end + 1);
    }
}

struct Match {
    RowKey key;
    std::string line;
};

/// Reads the texts alone: to make an object of each record would take ten times as long.
std::vector<Match> matches(ModelContext& context, const Place& place, const Text::Needle& needle) {
    std::vector<Match> found;
    const StatementLoan rows = context.statement(
        fmt::format("SELECT key, {} FROM \"{}\" ORDER BY key", fmt::join(place.columns, ", "), place.type.name));
    while (rows->step())
        for (std::size_t column = 0; column < place.columns.size(); ++column)
            if (auto line = lineWith(rows->text(static_cast<int>(column) + 1), needle)) {
                found.push_back({rows->integer(0), std::move(*line)});
                break;
            }
    return found;
}

template <class Object, class Describe>
void add(ModelContext& context, const Place& place, const Text::Needle& needle, std::vector<FoundRecord>& all,
         const Describe& describe) {
    std::vector<Match> found = matches(context, place, needle);
    std::vector<RowKey> keys;
    keys.reserve(found.size());
    for (const Match& match : found)
        keys.push_back(match.key);
    // In the order of the matches: both go by the key.
    const auto objects =
        context.fetch<Object>({.where = "key IN (SELECT value FROM json_each(?))", .values = {keyList(keys)}});
    auto match = found.begin();
    for (const Object* object : objects) {
        while (match->key != object->key())
            ++match;
        const auto [kind, title] = describe(*object);
        all.push_back({kind, object->id(), title, std::move(match->line)});
    }
}

} // namespace

std::string_view nameOf(Kind kind) {
    constexpr std::array<std::string_view, 6> names = {"client", "project", "task", "comment", "note", "timeEntry"};
    return names[static_cast<std::size_t>(kind)];
}

std::vector<FoundRecord> searchRecords(ModelContext& context, std::string_view part, const Text& text) {
    const Text::Needle needle = text.needle(part);
    std::vector<FoundRecord> all;
    add<Client>(context, {Client::entityType(), {"name", "clientDescription"}}, needle, all,
                [](const Client& client) { return std::pair(Kind::client, client.name()); });
    add<Project>(context, {Project::entityType(), {"name", "projectDescription"}}, needle, all,
                 [](const Project& project) { return std::pair(Kind::project, project.name()); });
    add<ProjectTask>(context, {ProjectTask::entityType(), {"title", "taskDescription", "sourceTitle", "sourceURL"}},
                     needle, all, [](const ProjectTask& task) { return std::pair(Kind::task, task.title()); });
    add<Note>(context, {Note::entityType(), {"title", "content"}}, needle, all, [](const Note& note) {
        return note.task() != nullptr ? std::pair(Kind::comment, "Comment on " + note.task()->title())
                                      : std::pair(Kind::note, note.displayTitle());
    });
    add<TimeEntry>(context, {TimeEntry::entityType(), {"title", "notes"}}, needle, all,
                   [](const TimeEntry& entry) { return std::pair(Kind::timeEntry, entry.displayName()); });
    std::ranges::stable_sort(all, {}, &FoundRecord::kind);
    return all;
}

} // namespace quillorn
