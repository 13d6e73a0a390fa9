#include "Desktop/TaskDetailScreen.h"

#include <QClipboard>
#include <QGuiApplication>
#include <array>

namespace quillorn {

namespace {

using View = TaskDetailView;
using Field = View::Field;

constexpr std::array<std::pair<const char*, Field>, 4> fieldNames = {{{"title", Field::title},
                                                                      {"description", Field::description},
                                                                      {"sourceTitle", Field::sourceTitle},
                                                                      {"sourceURL", Field::sourceURL}}};

std::optional<Field> fieldOf(const QString& name) {
    for (const auto& [known, field] : fieldNames)
        if (name == known)
            return field;
    return std::nullopt;
}

constexpr Role<View::SubtaskRow> subtaskRoles[] = {
    role<&View::SubtaskRow::id>("recordId"),
    role<&View::SubtaskRow::title>("title"),
    role<&View::SubtaskRow::symbol>("symbol"),
    role<&View::SubtaskRow::isCompleted>("isCompleted"),
    role<&View::SubtaskRow::toggleLabel>("toggleLabel"),
};
constexpr Role<View::EntryRow> entryRoles[] = {
    role<&View::EntryRow::id>("recordId"),         role<&View::EntryRow::times>("times"),
    role<&View::EntryRow::title>("title"),         role<&View::EntryRow::duration>("duration"),
    role<&View::EntryRow::isRunning>("isRunning"),
};
constexpr Role<View::CommentRow> commentRoles[] = {
    role<&View::CommentRow::id>("recordId"),
    role<&View::CommentRow::when>("when"),
    role<&View::CommentRow::text>("content"),
};
constexpr Role<FormChoice> tagRoles[] = {
    role<&FormChoice::id>("recordId"),
    role<&FormChoice::name>("name"),
    role<&FormChoice::color>("tone"),
};

} // namespace

TaskDetailScreen::TaskDetailScreen(const ViewEnvironment& environment, const UUID& task,
                                   std::function<APIConfig()> config)
    : m_view(environment, task, std::move(config)),
      m_subtasks(m_view.subtasks(), subtaskRoles),
      m_entries(m_view.entries(), entryRoles),
      m_comments(m_view.comments(), commentRoles),
      m_tags(m_view.tags(), tagRoles),
      m_changes(m_view.observe(telling())) {}

QVariantMap TaskDetailScreen::fields() const {
    QVariantMap map;
    for (const auto& [name, field] : fieldNames)
        map.insert(name, toVariant(m_view.field(field).text()));
    return map;
}

QString TaskDetailScreen::warning() const {
    for (const auto& [name, field] : fieldNames)
        if (const std::string_view warning = m_view.field(field).notice(); !warning.empty())
            return toQString(warning);
    return {};
}

QVariantMap TaskDetailScreen::words() const {
    const View::Words& words = m_view.words();
    return {{"isCompleted", words.isCompleted},
            {"completionButton", toVariant(View::completionButton(words.isCompleted))},
            {"timerButton", toVariant(m_view.timerButton())},
            {"status", toVariant(words.statusLabel)},
            {"statusSymbol", toVariant(words.statusSymbol)},
            {"priority", toVariant(words.priorityLabel)},
            {"priorityMark", toVariant(words.priorityMark)},
            {"due", toVariant(words.due)},
            {"isOverdue", words.isOverdue},
            {"created", toVariant(words.created)},
            {"updated", toVariant(words.updated)},
            {"completed", toVariant(words.completed)},
            {"source", toVariant(words.source)},
            {"sourceURL", toVariant(words.sourceURL)},
            {"subtasks", toVariant(words.subtasks)},
            {"progress", words.progress},
            {"time", toVariant(words.time)},
            {"clock", toVariant(words.clock)}};
}

QVariantList TaskDetailScreen::path() const {
    return toList(m_view.words().path);
}

QVariantMap TaskDetailScreen::texts() {
    return {{"copyButton", toVariant(View::copyButton)},
            {"subtasksTitle", toVariant(View::subtasksTitle)},
            {"timeTitle", toVariant(View::timeTitle)},
            {"commentsTitle", toVariant(View::commentsTitle)},
            {"commentPrompt", toVariant(View::commentPrompt)},
            {"recording", toVariant(View::recording)},
            {"gone", toVariant(View::gone)}};
}

void TaskDetailScreen::type(const QString& field, const QString& text) {
    if (const auto known = fieldOf(field))
        m_view.type(*known, text.toStdString());
}

void TaskDetailScreen::leave(const QString& field) {
    if (const auto known = fieldOf(field))
        m_view.leave(*known);
}

void TaskDetailScreen::revert(const QString& field) {
    if (const auto known = fieldOf(field))
        m_view.revert(*known);
}

void TaskDetailScreen::setStatus(int status) {
    if (const auto known = enumFromRaw<TaskStatus>(status))
        m_view.setStatus(*known);
}

void TaskDetailScreen::setPriority(int priority) {
    if (const auto known = enumFromRaw<TaskPriority>(priority))
        m_view.setPriority(*known);
}

QVariantList TaskDetailScreen::tagChoices() const {
    return toList(m_view.tagChoices());
}

QVariantList TaskDetailScreen::projectChoices() const {
    return toList(m_view.projectChoices());
}

void TaskDetailScreen::toggleTag(const QString& tag) {
    if (const auto id = toId(tag))
        m_view.toggleTag(*id);
}

void TaskDetailScreen::toggleSubtask(const QString& subtask) {
    if (const auto id = toId(subtask))
        m_view.toggleSubtask(*id);
}

QVariantMap TaskDetailScreen::deletionOfComment(const QString& comment) const {
    const auto id = toId(comment);
    return id ? toQuestion(m_view.deletionOfComment(*id)) : QVariantMap();
}

void TaskDetailScreen::removeComment(const QString& comment) {
    if (const auto id = toId(comment))
        m_view.removeComment(*id);
}

void TaskDetailScreen::copyForAgent() const {
    QGuiApplication::clipboard()->setText(toQString(m_view.copyForAgent()));
}

} // namespace quillorn
