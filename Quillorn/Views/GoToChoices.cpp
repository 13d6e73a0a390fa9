#include "Views/GoToChoices.h"

#include "Platform/Text.h"
#include "Store/MainContext.h"
#include "Views/SidebarItem.h"

#include <cstddef>

namespace quillorn {

namespace {

/// A kind of records: `sql` gives id, name, and where the record belongs.
struct Places {
    const char* kind;
    const char* noun;
    std::string_view symbol;
    std::size_t most;
    const char* sql;
};

constexpr Places allPlaces[] = {
    {"client", "Client", "building.2.fill", 6,
     "SELECT id, name, NULL FROM Client WHERE isArchived = 0 ORDER BY name COLLATE NOCASE, id"},
    {"project", "Project", "folder", 8,
     "SELECT Project.id, Project.name, Client.name FROM Project LEFT JOIN Client ON Client.key = Project.client "
     "WHERE Project.isArchived = 0 ORDER BY Project.name COLLATE NOCASE, Project.id"},
    {"tag", "Tag", "tag", 6, "SELECT id, name, NULL FROM Tag ORDER BY name COLLATE NOCASE, id"},
    {"task", "Task", "circle", 12,
     "SELECT ProjectTask.id, title, Project.name FROM ProjectTask LEFT JOIN Project ON Project.key = project "
     "WHERE completedAt IS NULL ORDER BY ProjectTask.status = 1 DESC, ProjectTask.updatedAt DESC, ProjectTask.id"},
    // The beginning of one without a title stands for it.
    {"note", "Note", "note.text", 8,
     "SELECT Note.id, CASE WHEN title <> '' THEN title ELSE replace(substr(content, 1, 80), char(10), ' ') END, "
     "Project.name FROM Note LEFT JOIN Project ON Project.key = project "
     "WHERE task IS NULL ORDER BY Note.updatedAt DESC, Note.id"},
};

} // namespace

std::vector<GoToChoice> goToChoices(const ViewEnvironment& environment, std::string_view search) {
    const std::string_view wanted = trimBlanks(search);
    const Text::Needle needle = environment.text.needle(wanted);
    const auto fits = [&](std::string_view name) { return wanted.empty() || needle.isIn(name); };
    std::vector<GoToChoice> choices;
    for (const SidebarItem::Kind kind : smartListKinds)
        if (const SmartListTexts& texts = textsOf(kind); fits(texts.label))
            choices.push_back({std::string(texts.key), "", std::string(texts.label), "List", texts.symbol});
    for (const Places& places : allPlaces) {
        const StatementLoan rows = environment.main.context().statement(places.sql);
        for (std::size_t count = 0; count < places.most && rows->step();) {
            const std::string_view name = rows->text(1);
            if (!fits(name))
                continue;
            ++count;
            std::string subtitle = places.noun;
            if (!rows->isNull(2))
                subtitle += " · " + std::string(rows->text(2));
            choices.push_back(
                {places.kind, rows->uuid(0).string(), std::string(name), std::move(subtitle), places.symbol});
        }
    }
    return choices;
}

} // namespace quillorn
