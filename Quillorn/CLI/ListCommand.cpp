#include "CLI/StoreWork.h"
#include "CLI/TaskCells.h"
#include "CLI/TaskCommands.h"
#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/Settings.h"
#include "Models/Tag.h"
#include "Records/RecordChoice.h"
#include "Records/TaskRecord.h"
#include "Views/TaskGrouping.h"
#include "Views/TaskListTexts.h"
#include "Views/TaskMeeting.h"
#include "Views/TaskMembership.h"
#include "Views/TaskSorting.h"
#include "Views/TaskTextSearch.h"

#include <set>

namespace quillorn {

namespace {

using Kind = TaskFilter::Kind;

Kind kindNamed(const std::string& list) {
    return list == "today" ? Kind::today : list == "upcoming" ? Kind::upcoming : Kind::all;
}

SortOrder orderNamed(const std::string& sort) {
    return sort == "priority"  ? SortOrder::priority
           : sort == "title"   ? SortOrder::title
           : sort == "created" ? SortOrder::createdAt
                               : SortOrder::dueDate;
}

GroupBy groupingNamed(const std::string& group) {
    return group == "status"    ? GroupBy::status
           : group == "project" ? GroupBy::project
           : group == "due"     ? GroupBy::dueDate
           : group == "tag"     ? GroupBy::tag
                                : GroupBy::priority;
}

/// What the options ask for, as it was found in the store.
class TaskListing {
  public:
    TaskListing(const ListOptions& options, StoreWork& work)
        : m_options(options),
          m_work(work),
          m_moment(TaskMoment::at(work.now, work.calendar())),
          m_main{kindNamed(options.list)} {
        const Text& text = work.text();
        if (options.client)
            add(Kind::client, chooseClient(work.context, *options.client, text).id());
        if (options.project)
            add(Kind::project, chooseProject(work.context, *options.project, text).id());
        if (options.tag) {
            const Tag& tag = chooseTag(work.context, *options.tag, text);
            m_tagName = tag.name();
            add(Kind::tag, tag.id());
        }
    }

    std::vector<ProjectTask*> tasks() const {
        auto tasks = m_work.context.fetch<ProjectTask>(query());
        keepMeeting(tasks);
        const TaskTextSearch search(m_options.search.value_or(""), m_work.text());
        if (!search.isBlank())
            std::erase_if(tasks, [&](const ProjectTask* task) { return !search.matches(*task); });
        sortTasks(tasks, orderNamed(m_options.sort), m_work.text());
        if (m_options.limit && tasks.size() > *m_options.limit)
            tasks.resize(*m_options.limit);
        return tasks;
    }

    std::vector<TaskSection> sections(const std::vector<ProjectTask*>& tasks) const {
        return groupTasks(tasks, groupingNamed(m_options.group.value_or("")), m_moment, m_work.text());
    }

    EmptyState emptyState() const {
        return emptyTaskList(
            m_main, m_tagName,
            {.isSearching = m_options.search.has_value(), .hasMeeting = m_options.meeting.has_value()});
    }

  private:
    void add(Kind kind, const UUID& id) {
        m_more.push_back({kind, id});
        if (m_main.kind == Kind::all)
            m_main = m_more.back();
    }

    Query query() const {
        const bool showsCompleted =
            m_options.showsCompleted || Settings(m_work.session.settings()).boolean(setting("showCompletedTasks"));
        Query query = taskQuery({kindNamed(m_options.list)}, m_moment, showsCompleted);
        for (const TaskFilter& filter : m_more) {
            const Query narrower = taskQuery(filter, m_moment, true);
            query.where += (query.where.empty() ? "(" : " AND (") + narrower.where + ")";
            query.values.insert(query.values.end(), narrower.values.begin(), narrower.values.end());
        }
        return query;
    }

    void keepMeeting(std::vector<ProjectTask*>& tasks) const {
        if (!m_options.meeting)
            return;
        std::set<std::string, std::less<>> keys;
        for (const TaskMeeting& meeting : meetingsMatching(meetingsOf(tasks), *m_options.meeting, m_work.text()))
            keys.insert(meeting.key);
        std::erase_if(tasks, [&](const ProjectTask* task) { return !keys.contains(meetingKey(*task)); });
    }

    const ListOptions& m_options;
    StoreWork& m_work;
    TaskMoment m_moment;
    /// What the list is of; the rest narrows it.
    TaskFilter m_main;
    std::vector<TaskFilter> m_more;
    std::string m_tagName;
};

void writeSections(JsonWriter& writer, const std::vector<TaskSection>& sections, StoreWork& work) {
    writer.beginArray();
    for (const TaskSection& section : sections) {
        writer.beginObject();
        writer.key("key");
        writer.string(section.head.key);
        writer.key("tasks");
        writeRows(writer, TaskRecordRows(work.context, section.tasks, work.now));
        writer.key("title");
        writer.string(section.head.title);
        writer.endObject();
    }
    writer.endArray();
}

void printTable(const std::vector<ProjectTask*>& tasks, StoreWork& work) {
    Table table = taskTable();
    for (const ProjectTask* task : tasks)
        table.add(taskCells(*task, work.now, work.calendar()));
    table.print();
}

void printTable(const std::vector<TaskSection>& sections, StoreWork& work) {
    Table table = taskTable(true);
    for (const TaskSection& section : sections) {
        table.addHeading(section.head.title);
        for (const ProjectTask* task : section.tasks) {
            std::vector<Cell> cells = taskCells(*task, work.now, work.calendar());
            cells.insert(cells.begin(), Cell(section.head.key));
            table.add(std::move(cells));
        }
    }
    table.print();
}

} // namespace

ExitStatus listTasks(const ListOptions& options, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        const TaskListing listing(options, work);
        const std::vector<ProjectTask*> tasks = listing.tasks();
        if (options.json) {
            printJson([&](JsonWriter& writer) {
                if (options.group)
                    writeSections(writer, listing.sections(tasks), work);
                else
                    writeRows(writer, TaskRecordRows(work.context, tasks, work.now));
            });
        } else if (tasks.empty()) {
            const EmptyState empty = listing.emptyState();
            if (isForPeople())
                fmt::print("{}\n{}\n", shown(empty.title), shown(empty.text));
        } else if (options.group) {
            printTable(listing.sections(tasks), work);
        } else {
            printTable(tasks, work);
        }
        return ExitStatus::success;
    });
}

} // namespace quillorn
