#include "Desktop/TaskListScreen.h"

#include "Desktop/Values.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Views/DetailView.h"

#include <algorithm>

namespace quillorn {

namespace {

template <auto Member>
constexpr Role<TaskListRow> word(const char* name) {
    return {name, [](const TaskListRow& row) { return toVariant((*row.words).*Member); }};
}

QVariant tagsOf(const TaskListRow& row) {
    QVariantList tags;
    for (const TagChip& tag : row.words->tags)
        tags.append(QVariantMap{{"name", toVariant(tag.name)}, {"color", toVariant(tag.color)}});
    return tags;
}

constexpr Role<TaskListRow> roles[] = {
    {"kind", [](const TaskListRow& row) { return toVariant(row.kind()); }},
    {"taskId", [](const TaskListRow& row) { return toVariant(row.id.task); }},
    role<&TaskListRow::depth>("depth"),
    role<&TaskListRow::disclosure>("disclosure"),
    word<&TaskRowWords::title>("title"),
    word<&TaskRowWords::symbol>("symbol"),
    word<&TaskRowWords::mark>("mark"),
    word<&TaskRowWords::statusLabel>("statusLabel"),
    word<&TaskRowWords::projectName>("projectName"),
    word<&TaskRowWords::color>("tone"),
    word<&TaskRowWords::dueText>("dueText"),
    word<&TaskRowWords::dueTimeText>("dueTimeText"),
    word<&TaskRowWords::subtasksText>("subtasksText"),
    word<&TaskRowWords::countText>("countText"),
    word<&TaskRowWords::timeText>("timeText"),
    word<&TaskRowWords::isCompleted>("isCompleted"),
    word<&TaskRowWords::isOverdue>("isOverdue"),
    {"tags", tagsOf},
};

QVariantMap cardOf(const SmartListDashboardHeader::Card& card) {
    return {{"symbol", toVariant(card.symbol)},
            {"title", toVariant(card.title)},
            {"value", toVariant(card.value)},
            {"text", toVariant(card.text)}};
}

QVariantMap breakdownOf(const SmartListDashboardHeader::Breakdown& breakdown) {
    QVariantList bars;
    for (const SmartListDashboardHeader::Bar& bar : breakdown.bars)
        bars.append(QVariantMap{{"symbol", toVariant(bar.symbol)},
                                {"mark", toVariant(bar.mark)},
                                {"label", toVariant(bar.label)},
                                {"value", toVariant(bar.count)},
                                {"text", QString::number(bar.count)}});
    return {{"title", toVariant(breakdown.title)}, {"bars", bars}, {"emptyText", toVariant(breakdown.emptyText)}};
}

template <typename Values>
QStringList labels(const Values& values, auto label) {
    QStringList all;
    for (const auto& value : values)
        all.append(toQString(label(value)));
    return all;
}

} // namespace

TaskListScreen::TaskListScreen(const ViewEnvironment& environment, SceneStorage& scene, const TaskFilter& filter)
    : m_environment(environment),
      m_view(environment, scene, filter),
      m_model(m_view.rows(), roles),
      m_changes(m_view.observe(telling())) {}

QStringList TaskListScreen::sortOrderLabels() {
    return labels(sortOrders, [](SortOrder order) { return rawValue(order); });
}

void TaskListScreen::setSortOrder(int order) {
    if (order >= 0 && order < static_cast<int>(std::size(sortOrders)))
        m_view.setSortOrder(sortOrders[order]);
}

QStringList TaskListScreen::groupingLabels() {
    return labels(groupings, [](GroupBy grouping) { return rawValue(grouping); });
}

void TaskListScreen::setGrouping(int grouping) {
    if (grouping >= 0 && grouping < static_cast<int>(std::size(groupings)))
        m_view.setGroupBy(groupings[grouping]);
}

QVariantMap TaskListScreen::emptyState() const {
    return toMap(m_view.emptyState());
}

QVariantMap TaskListScreen::dashboard() const {
    const std::optional<SmartListDashboardHeader> header = m_view.dashboard();
    if (!header)
        return {};
    QVariantMap map{{"hero", cardOf(header->hero)}};
    if (header->overdue)
        map.insert("overdue", cardOf(*header->overdue));
    QVariantList breakdowns;
    for (const SmartListDashboardHeader::Breakdown& breakdown : header->breakdowns)
        breakdowns.append(breakdownOf(breakdown));
    map.insert("breakdowns", breakdowns);
    return map;
}

QStringList TaskListScreen::statuses() {
    return caseLabels<TaskStatus>();
}

QStringList TaskListScreen::priorities() {
    return caseLabels<TaskPriority>();
}

QVariantMap TaskListScreen::words() {
    using View = TaskListView;
    return {{"title", toVariant(View::title)},
            {"meetingHelp", toVariant(View::meetingHelp)},
            {"meetingPrompt", toVariant(View::meetingPrompt)},
            {"clearMeetingButton", toVariant(View::clearMeetingButton)},
            {"sortLabel", toVariant(View::sortLabel)},
            {"groupLabel", toVariant(View::groupLabel)},
            {"showCompletedLabel", toVariant(View::showCompletedLabel)}};
}

QVariantMap TaskListScreen::menuWords() {
    QVariantList dueChoices;
    for (const TaskMenu::DueChoice& choice : TaskMenu::dueChoices)
        dueChoices.append(QVariantMap{{"label", toVariant(choice.label)}, {"days", choice.days}});
    return {{"startTimer", toVariant(TaskMenu::startTimer)},
            {"status", toVariant(TaskMenu::statusTitle)},
            {"priority", toVariant(TaskMenu::priorityTitle)},
            {"due", toVariant(TaskMenu::dueTitle)},
            {"project", toVariant(TaskMenu::projectTitle)},
            {"tags", toVariant(TaskMenu::tagsTitle)},
            {"none", toVariant(TaskMenu::none)},
            {"convert", toVariant(TaskMenu::convert)},
            {"duplicate", toVariant(TaskMenu::duplicate)},
            {"remove", toVariant(TaskMenu::remove)},
            {"dueChoices", dueChoices}};
}

QVariantList TaskListScreen::meetings(const QString& typed) const {
    QVariantList list;
    for (const TaskMeeting& meeting : meetingsMatching(m_view.meetings(), typed.toStdString(), m_environment.text))
        list.append(QVariantMap{{"key", toVariant(meeting.key)}, {"label", toVariant(meeting.label())}});
    return list;
}

void TaskListScreen::toggleDisclosure(const QString& task) {
    if (const std::optional<UUID> id = toId(task))
        m_view.toggleDisclosure(*id);
}

void TaskListScreen::select(const QStringList& tasks) {
    TaskIds ids;
    for (const QString& task : tasks)
        if (const std::optional<UUID> id = toId(task))
            ids.push_back(*id);
    m_view.select(std::move(ids));
}

QStringList TaskListScreen::selection() const {
    return labels(m_view.selection(), [](const UUID& id) { return id.string(); });
}

TaskIds TaskListScreen::targets(const QString& task) const {
    const std::optional<UUID> id = toId(task);
    return id ? m_view.targets(*id) : m_view.selection();
}

QVariantMap TaskListScreen::menu(const QString& task) {
    const TaskIds ids = targets(task);
    const TaskMenu menu = m_view.edits().menu(ids);
    const std::vector<ProjectTask*> tasks = m_view.edits().find(ids);
    QVariantMap map{{"completion", toVariant(menu.completion)},
                    {"canConvert", menu.canConvertToStandalone},
                    {"projects", toList(projectChoices(m_environment, std::nullopt))}};
    if (menu.status)
        map.insert("status", static_cast<int>(*menu.status));
    if (menu.priority)
        map.insert("priority", static_cast<int>(*menu.priority));
    QVariantList tags;
    for (const FormChoice& choice : tagChoices(m_environment)) {
        const auto has = [&](const ProjectTask* each) {
            return std::ranges::any_of(each->tags(), [&](const Tag* tag) { return tag->id() == choice.id; });
        };
        QVariantMap tag = toVariant(choice).toMap();
        tag.insert("isOn", std::ranges::all_of(tasks, has));
        tags.append(tag);
    }
    map.insert("tags", tags);
    return map;
}

QString TaskListScreen::carried(const QString& task, const QString& title) const {
    const std::size_t count = targets(task).size();
    return count > 1 ? toQString(counted(count, "task")) : title;
}

void TaskListScreen::toggleCompleted(const QString& task) {
    editTargets(task, [](TaskEdits& edits, const TaskIds& ids) { edits.toggleCompleted(ids); });
}

void TaskListScreen::setStatus(const QString& task, int status) {
    if (const auto known = enumFromRaw<TaskStatus>(status))
        editTargets(task, [&](TaskEdits& edits, const TaskIds& ids) { edits.setStatus(ids, *known); });
}

void TaskListScreen::setPriority(const QString& task, int priority) {
    if (const auto known = enumFromRaw<TaskPriority>(priority))
        editTargets(task, [&](TaskEdits& edits, const TaskIds& ids) { edits.setPriority(ids, *known); });
}

void TaskListScreen::setDueIn(const QString& task, const QVariant& days) {
    std::optional<Date> due;
    if (days.isValid() && !days.isNull())
        due =
            m_environment.calendar.addDays(m_environment.calendar.startOfDay(m_environment.clock.now()), days.toInt());
    editTargets(task, [&](TaskEdits& edits, const TaskIds& ids) { edits.setDueDate(ids, due, false); });
}

void TaskListScreen::setTag(const QString& task, const QString& tag, bool isOn) {
    if (const std::optional<UUID> id = toId(tag))
        editTargets(task, [&](TaskEdits& edits, const TaskIds& ids) { edits.setTag(ids, *id, isOn); });
}

void TaskListScreen::moveToProject(const QString& task, const QString& project) {
    editTargets(task, [&](TaskEdits& edits, const TaskIds& ids) { edits.moveToProject(ids, toId(project)); });
}

void TaskListScreen::duplicate(const QString& task) {
    editTargets(task, [](TaskEdits& edits, const TaskIds& ids) { edits.duplicate(ids); });
}

void TaskListScreen::convertToStandalone(const QString& task) {
    editTargets(task, [](TaskEdits& edits, const TaskIds& ids) { edits.convertToStandalone(ids); });
}

QVariantMap TaskListScreen::deletion(const QString& task) {
    return toQuestion(m_view.edits().deletion(targets(task)));
}

void TaskListScreen::remove(const QString& task) {
    editTargets(task, [](TaskEdits& edits, const TaskIds& ids) { edits.remove(ids); });
}

} // namespace quillorn
