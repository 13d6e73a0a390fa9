#include "AI/ChatTool.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Models/TimeEntry.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Store/KeyCondition.h"

#include <cmath>
#include <fmt/core.h>

namespace quillorn {

ChatToolCall::ChatToolCall(ModelContext& reading, const ChatSubject& subject, Date moment, const Calendar& days,
                           const Text& words, const ToolArguments& given)
    : context(reading),
      now(moment),
      calendar(days),
      text(words),
      arguments(given),
      m_subject(subject),
      m_condition(subject.client != nullptr ? " IN (SELECT key FROM Project WHERE client = ?)" : " = ?"),
      // No row has the key 0: of a record that is gone nothing is seen.
      m_key(subject.client != nullptr    ? subject.client->key()
            : subject.project != nullptr ? subject.project->key()
                                         : 0) {}

std::vector<Project*> ChatToolCall::projects() const {
    if (m_subject.project != nullptr)
        return {m_subject.project};
    if (m_subject.client == nullptr)
        return {};
    auto projects = m_subject.client->activeProjects();
    sortByName(projects, text);
    return projects;
}

Query ChatToolCall::tasksInScope() const {
    return {.where = "ProjectTask.project" + m_condition, .values = {m_key}};
}

Query ChatToolCall::notesInScope() const {
    return {.where = "Note.project" + m_condition, .values = {m_key}};
}

Query ChatToolCall::timeEntriesInScope() const {
    return {.where = fmt::format("(TimeEntry.task IN (SELECT key FROM ProjectTask WHERE project{0}) "
                                 "OR TimeEntry.project{0})",
                                 m_condition),
            .values = {m_key, m_key}};
}

std::string ChatToolCall::day(Date date) const {
    return calendar.mediumDate(date);
}

std::string ChatToolCall::moment(Date date) const {
    return fmt::format("{}, {}", calendar.mediumDate(date), calendar.format(date, "h:mm a"));
}

const std::vector<ChatTool>& chatTools() {
    static const std::vector<ChatTool> tools = [] {
        std::vector<ChatTool> all = chatTaskTools();
        for (const auto& part : {chatNoteTools(), chatTimeTools()})
            all.insert(all.end(), part.begin(), part.end());
        return all;
    }();
    return tools;
}

void restrict(Query& query, std::string_view condition, std::vector<SQLValue> values) {
    query.where.append(" AND ").append(condition);
    query.values.insert(query.values.end(), values.begin(), values.end());
}

Json hoursOf(double seconds) {
    return std::round(seconds / 360) / 10;
}

Json toolError(std::string_view words) {
    return Json::Object{{"error", words}};
}

template <class Object>
std::vector<Object*> objectsOf(ModelContext& context, const std::vector<RowKey>& keys) {
    KeyMap<Object*> found;
    for (Object* object :
         context.fetch<Object>({.where = "key IN (SELECT value FROM json_each(?))", .values = {keyList(keys)}}))
        found[object->key()] = object;
    std::vector<Object*> objects;
    for (const RowKey key : keys)
        if (Object* const* object = found.find(key))
            objects.push_back(*object);
    return objects;
}
template std::vector<ProjectTask*> objectsOf(ModelContext& context, const std::vector<RowKey>& keys);
template std::vector<Note*> objectsOf(ModelContext& context, const std::vector<RowKey>& keys);
template std::vector<Project*> objectsOf(ModelContext& context, const std::vector<RowKey>& keys);

} // namespace quillorn
