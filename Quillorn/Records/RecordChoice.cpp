#include "Records/RecordChoice.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectDivider.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Platform/Terminal.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <array>
#include <fmt/core.h>

namespace quillorn {

namespace {

constexpr std::size_t leastOfAnId = 4;
constexpr std::size_t longestList = 50;

bool beginsId(const UUID& id, std::string_view typed) {
    const std::string text = id.string();
    const auto same = [](char a, char b) {
        return a == (b >= 'a' && b <= 'f' ? static_cast<char>(b - ('a' - 'A')) : b);
    };
    return typed.size() >= leastOfAnId && typed.size() <= text.size() &&
           std::ranges::equal(std::string_view(text).substr(0, typed.size()), typed, same);
}

/// How the records of a type are looked through. The statement gives key, id, name and whether a record is set aside
/// where others fit as well; reading whole records would take far longer.
template <class Object>
struct Candidates {
    const char* word;
    const char* select;
    std::string (*nameOf)(const Object& object);
};

template <class Object>
std::string nameIn(const Object& object) {
    return object.name();
}
template <class Object>
std::string titleIn(const Object& object) {
    return object.title();
}
std::string headingOf(const Note& note) {
    return note.displayTitle();
}
std::string nameOf(const TimeEntry& entry) {
    return fmt::format("{}  {}", formatISO8601(entry.startTime()), entry.displayName());
}

constexpr Candidates<Project> projects{"project", "SELECT key, id, name, isArchived FROM Project", nameIn};
constexpr Candidates<Client> clients{"client", "SELECT key, id, name, isArchived FROM Client", nameIn};
constexpr Candidates<ProjectTask> tasks{"task", "SELECT key, id, title, completedAt IS NOT NULL FROM ProjectTask",
                                        titleIn};
constexpr Candidates<Tag> tags{"tag", "SELECT key, id, name, 0 FROM Tag", nameIn};
constexpr Candidates<ProjectDivider> groups{"group", "SELECT key, id, title, 0 FROM ProjectDivider", titleIn};

/// Which way of naming fits, from the most exact one; the number of ways for none.
enum class Way : std::size_t { name, idBeginning, namePart };
constexpr std::size_t wayCount = 3;

std::size_t wayOf(const UUID& id, std::string_view name, std::string_view typed, const Text::Needle& part,
                  const Text& text) {
    if (name == typed || text.compareIgnoringCase(name, typed) == 0)
        return static_cast<std::size_t>(Way::name);
    if (beginsId(id, typed))
        return static_cast<std::size_t>(Way::idBeginning);
    return part.isIn(name) ? static_cast<std::size_t>(Way::namePart) : wayCount;
}

template <class Object>
[[noreturn]] void refuse(const Candidates<Object>& kind, std::string_view typed, std::vector<Object*> found,
                         const Text& text) {
    std::ranges::sort(found, [&](const Object* a, const Object* b) {
        const int order = text.compare(kind.nameOf(*a), kind.nameOf(*b));
        return order != 0 ? order < 0 : a->id() < b->id();
    });
    std::vector<std::string> lines;
    for (const Object* each : found) {
        if (lines.size() == longestList) {
            lines.push_back(fmt::format("and {} more", found.size() - longestList));
            break;
        }
        lines.push_back(fmt::format("{}  {}", each->id().string(), escapeControls(kind.nameOf(*each))));
    }
    throw RecordChoiceError(kind.word, typed, lines);
}

/// What fits, by way and whether it is set aside.
template <class Object>
class Matches {
  public:
    void add(std::size_t way, bool isSetAside, Object& object) {
        if (!object.isDeleted())
            m_found[way * 2 + (isSetAside ? 1 : 0)].push_back(&object);
    }
    Object& only(const Candidates<Object>& kind, std::string_view typed, const Text& text) const {
        const auto first = std::ranges::find_if(m_found, [](const auto& each) { return !each.empty(); });
        if (first == m_found.end())
            throw RecordChoiceError(kind.word, typed, {});
        if (first->size() > 1)
            refuse(kind, typed, *first, text);
        return *first->front();
    }

  private:
    std::array<std::vector<Object*>, 2 * wayCount> m_found;
};

template <class Object>
Object* findExactly(ModelContext& context, std::string_view typed) {
    const auto id = UUID::parse(typed);
    Object* object = id ? context.find<Object>(*id) : nullptr;
    return object != nullptr && !object->isDeleted() ? object : nullptr;
}

template <class Object>
Object& choose(ModelContext& context, std::string_view typed, const Text& text, const Candidates<Object>& kind) {
    if (auto* object = findExactly<Object>(context, typed))
        return *object;
    struct Match {
        RowKey key;
        std::size_t way;
        bool isSetAside;
    };
    std::vector<Match> fitting;
    {
        const Text::Needle part = text.needle(typed);
        const StatementLoan rows = context.statement(kind.select);
        while (rows->step())
            if (const std::size_t way = wayOf(rows->uuid(1), rows->text(2), typed, part, text); way < wayCount)
                fitting.push_back({rows->integer(0), way, rows->integer(3) != 0});
    }
    Matches<Object> matches;
    for (const Match& match : fitting)
        if (auto* object = context.find<Object>(match.key))
            matches.add(match.way, match.isSetAside, *object);
    return matches.only(kind, typed, text);
}

/// For names that are no column.
template <class Object, class Name>
Object& chooseAmongObjects(ModelContext& context, std::string_view typed, const Text& text,
                           const Candidates<Object>& kind, const Name& name, bool (*isSetAside)(const Object&)) {
    if (auto* object = findExactly<Object>(context, typed))
        return *object;
    const Text::Needle part = text.needle(typed);
    Matches<Object> matches;
    for (Object* each : context.fetch<Object>())
        if (const std::size_t way = wayOf(each->id(), name(*each), typed, part, text); way < wayCount)
            matches.add(way, isSetAside(*each), *each);
    return matches.only(kind, typed, text);
}

std::string reasonFor(std::string_view word, const std::string& named, const std::vector<std::string>& matches) {
    if (matches.empty())
        return fmt::format("there is no {}{}", named.empty() ? "such " : "", word) + named;
    const bool isEntry = word.ends_with('y');
    const std::string_view stem = word.substr(0, word.size() - (isEntry ? 1 : 0));
    std::string reason = fmt::format("several {}{} fit{}:", stem, isEntry ? "ies" : "s", named);
    for (const std::string& line : matches)
        reason += "\n  " + line;
    return reason;
}

} // namespace

RecordChoiceError::RecordChoiceError(std::string_view word, std::string_view typed,
                                     const std::vector<std::string>& matches)
    : std::runtime_error(reasonFor(word, fmt::format(" \"{}\"", typed), matches)),
      m_reason(reasonFor(word, "", matches)) {}

Project& chooseProject(ModelContext& context, std::string_view typed, const Text& text) {
    return choose(context, typed, text, projects);
}

Client& chooseClient(ModelContext& context, std::string_view typed, const Text& text) {
    return choose(context, typed, text, clients);
}

ProjectTask& chooseTask(ModelContext& context, std::string_view typed, const Text& text) {
    return choose(context, typed, text, tasks);
}

Tag& chooseTag(ModelContext& context, std::string_view typed, const Text& text) {
    return choose(context, typed, text, tags);
}

ProjectDivider& chooseGroup(ModelContext& context, std::string_view typed, const Text& text) {
    return choose(context, typed, text, groups);
}

Note& chooseNote(ModelContext& context, std::string_view typed, const Text& text) {
    return chooseAmongObjects<Note>(context, typed, text, {"note", "", headingOf}, headingOf,
                                    [](const Note& note) { return note.task() != nullptr; });
}

TimeEntry& chooseTimeEntry(ModelContext& context, std::string_view typed, const Text& text) {
    return chooseAmongObjects<TimeEntry>(
        context, typed, text, {"time entry", "", nameOf}, [](const TimeEntry& entry) { return entry.displayName(); },
        [](const TimeEntry& entry) { return !entry.isRunning(); });
}

} // namespace quillorn
