#pragma once

#include "AI/ChatContext.h"
#include "AI/ToolArguments.h"
#include "Platform/Json.h"
#include "Store/ModelContext.h"

#include <string_view>
#include <vector>

namespace quillorn {

class Note;
class ProjectTask;
class Text;
class TimeEntry;

/// One call of a tool: what it may see, and the world around it. All that a tool reads goes through the three readers,
/// which select what is in the scope of the chat and nothing else.
class ChatToolCall {
  public:
    ChatToolCall(ModelContext& reading, const ChatSubject& subject, Date moment, const Calendar& days,
                 const Text& words, const ToolArguments& given);

    ModelContext& context;
    const Date now;
    const Calendar& calendar;
    const Text& text;
    const ToolArguments& arguments;

    /// The one project, archived or not; or the client's that are not archived, by name.
    std::vector<Project*> projects() const;
    /// Conditions over the columns of these tables, for further ones to be added.
    Query tasksInScope() const;
    Query notesInScope() const;
    /// Of the tasks and of the projects themselves; an entry of both comes once.
    Query timeEntriesInScope() const;

    /// "Jan 31, 2026" and "Jan 31, 2026, 3:04 PM".
    std::string day(Date date) const;
    std::string moment(Date date) const;

  private:
    ChatSubject m_subject;
    /// Restricts a column that holds keys of projects; has one parameter.
    std::string m_condition;
    RowKey m_key;
};

/// What the model is told of a parameter.
struct ChatToolParameter {
    std::string_view name;
    std::string_view type = "string";
    std::string_view description = {};
    std::vector<std::string_view> words = {};
    bool isRequired = false;
};

/// One tool of the chat: what the model is told of it, and what it does. It only reads, and never fails for what the
/// model gave it.
struct ChatTool {
    std::string_view name;
    std::string_view description;
    std::vector<ChatToolParameter> parameters;
    Json (*run)(const ChatToolCall& call);
};

const std::vector<ChatTool>& chatTools();

/// The parts of that list.
std::vector<ChatTool> chatTaskTools();
std::vector<ChatTool> chatNoteTools();
std::vector<ChatTool> chatTimeTools();

/// One more condition, with the values of its parameters.
void restrict(Query& query, std::string_view condition, std::vector<SQLValue> values = {});
/// Seconds as hours with one decimal.
Json hoursOf(double seconds);
/// An object with the one key "error".
Json toolError(std::string_view words);
/// The objects of those keys, in their order.
template <class Object>
std::vector<Object*> objectsOf(ModelContext& context, const std::vector<RowKey>& keys);

/// As lists show tasks and time entries; a constant number of statements.
Json::Array taskObjects(const ChatToolCall& call, const std::vector<ProjectTask*>& tasks);
Json::Array timeEntryObjects(const ChatToolCall& call, const std::vector<TimeEntry*>& entries);

} // namespace quillorn
