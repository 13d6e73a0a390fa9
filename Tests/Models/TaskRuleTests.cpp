#include "Models/TaskActions.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <thread>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;
using enum TaskStatus;

const Date earlier = testNow + 1h, later = testNow + 2h;

struct TaskRules : testing::Test {
    /// A task in the given state, whether a status operation or something else brought it there.
    ProjectTask& taskIn(TaskStatus status, bool completed) {
        auto& task = make<ProjectTask>(context, {.title = "t", .status = status});
        context.save();
        if (completed) {
            ForeignConnection(store.file())
                .execute("UPDATE ProjectTask SET completedAt = " + std::to_string(earlier.time_since_epoch().count()) +
                         " WHERE key = " + std::to_string(task.key()));
            reader = std::make_unique<ModelContext>(*store.container);
            return *reader->find<ProjectTask>(task.id());
        }
        return task;
    }

    TestStore store;
    ModelContext context{*store.container};
    std::unique_ptr<ModelContext> reader;
    std::vector<std::string> posts;
    NotificationCenter::Token token =
        store.notifications.observe(quillornTaskCompleted, [this](const Notification& notification) {
            auto* task = std::any_cast<ProjectTask*>(notification.object);
            EXPECT_EQ(std::any_cast<UUID>(notification.userInfo.at("taskId")), task->id());
            for (const TimeEntry* entry : task->timeEntries())
                EXPECT_FALSE(entry->isRunning()) << "entries end before the post";
            posts.push_back(task->title());
        });
};

TEST_F(TaskRules, setStatusInEveryState) {
    for (const TaskStatus from : {todo, inProgress, review, done}) {
        for (const bool completed : {false, true}) {
            for (const TaskStatus to : {todo, inProgress, review, done}) {
                SCOPED_TRACE(std::string(label(from)) + (completed ? " completed" : "") + " to " +
                             std::string(label(to)));
                auto& task = taskIn(from, completed);
                posts.clear();
                task.setStatus(to, later);
                EXPECT_EQ(task.status(), to);
                EXPECT_EQ(task.updatedAt(), later);
                const std::optional<Date> expected = to != done  ? std::nullopt
                                                     : completed ? std::optional(earlier)
                                                                 : std::optional(later);
                EXPECT_EQ(task.completedAt(), expected);
                EXPECT_EQ(posts.size(), to == done && !completed ? 1U : 0U);
            }
        }
    }
}

TEST_F(TaskRules, setCompletedInEveryState) {
    for (const TaskStatus from : {todo, inProgress, review, done}) {
        for (const bool completed : {false, true}) {
            for (const bool to : {false, true}) {
                SCOPED_TRACE(std::string(label(from)) + (completed ? " completed" : "") + (to ? " done" : " reopened"));
                auto& task = taskIn(from, completed);
                posts.clear();
                task.setCompleted(to, later);
                EXPECT_EQ(task.completedAt(), to ? std::optional(later) : std::nullopt);
                EXPECT_EQ(task.status(), to ? done : (from == done ? todo : from));
                EXPECT_EQ(task.updatedAt(), later);
                EXPECT_EQ(posts.size(), to && !completed ? 1U : 0U);
            }
        }
    }
}

TEST_F(TaskRules, completingEndsTheRunningEntriesOfThisTaskAlone) {
    for (const bool byStatus : {true, false}) {
        posts.clear();
        auto& parent = make<ProjectTask>(context, {.title = "parent"});
        auto& child = make<ProjectTask>(context, {.title = "child"});
        child.setParentTask(&parent);
        auto& first = make<TimeEntry>(context, {.task = &parent, .startTime = testNow});
        auto& second = make<TimeEntry>(context, {.task = &parent, .startTime = later + 1h}); // in the future: ended too
        auto& ended = make<TimeEntry>(context, {.task = &parent, .startTime = testNow});
        ended.setEndTime(earlier);
        auto& others = make<TimeEntry>(context, {.task = &child, .startTime = testNow});
        auto& removed = make<TimeEntry>(context, {.task = &parent, .startTime = testNow});
        context.save();
        context.remove(removed);
        byStatus ? parent.setStatus(done, later) : parent.setCompleted(true, later);
        EXPECT_EQ(first.endTime(), later);
        EXPECT_EQ(second.endTime(), later);
        EXPECT_EQ(ended.endTime(), earlier);
        EXPECT_TRUE(others.isRunning());
        EXPECT_FALSE(child.isCompleted());
        EXPECT_EQ(child.updatedAt(), testNow);
        EXPECT_THAT(posts, ElementsAre("parent"));
        second.setEndTime(std::nullopt);
        parent.setCompleted(true, later + 1h);
        EXPECT_TRUE(second.isRunning()) << "a repeated completion has no effects";
        EXPECT_EQ(posts.size(), 1U);
        context.save();
        ModelContext check(*store.container);
        EXPECT_EQ(check.find<TimeEntry>(first.id())->endTime(), later);
        EXPECT_EQ(check.find<ProjectTask>(parent.id())->completedAt(), later + 1h);
    }
}

TEST_F(TaskRules, completionIsPostedOnTheThreadThatCompletes) {
    std::vector<std::thread::id> threads;
    const auto watch = store.notifications.observe(
        quillornTaskCompleted, [&](const Notification&) { threads.push_back(std::this_thread::get_id()); });
    std::thread::id worker;
    std::thread([&] {
        worker = std::this_thread::get_id();
        ModelContext own(*store.container);
        make<ProjectTask>(own).setCompleted(true, later);
    }).join();
    EXPECT_THAT(threads, ElementsAre(worker));
}

TEST_F(TaskRules, duplicatingStartsOver) {
    auto& project = make<Project>(context);
    auto& parent = make<ProjectTask>(context, {.title = "parent"});
    auto& task = make<ProjectTask>(context, {.title = "t",
                                             .taskDescription = "d",
                                             .dueDate = earlier,
                                             .priority = TaskPriority::urgent,
                                             .status = review,
                                             .project = &project});
    task.setDueHasTime(true);
    task.setSortOrder(7);
    task.setSourceTitle("source");
    task.setSourceURL("link");
    task.setParentTask(&parent);
    task.setTags({&make<Tag>(context)});
    make<Note>(context, {.task = &task});
    make<TimeEntry>(context, {.task = &task});
    make<ProjectTask>(context).setParentTask(&task);
    task.setCompleted(true, earlier);
    context.save();
    const UUID id = duplicateTask(task, later).id();
    context.save();
    ModelContext check(*store.container);
    const auto& copy = *check.find<ProjectTask>(id);
    EXPECT_NE(id, task.id());
    EXPECT_EQ(copy.title(), "t (Copy)");
    EXPECT_EQ(copy.taskDescription(), "d");
    EXPECT_EQ(copy.dueDate(), earlier);
    EXPECT_EQ(copy.priority(), TaskPriority::urgent);
    EXPECT_EQ(copy.project()->id(), project.id());
    EXPECT_EQ(copy.sourceTitle(), "source");
    EXPECT_EQ(copy.sourceURL(), "link");
    EXPECT_EQ(copy.createdAt(), later);
    EXPECT_EQ(copy.status(), todo);
    EXPECT_EQ(copy.sortOrder(), 0);
    EXPECT_FALSE(copy.dueHasTime() || copy.isCompleted() || copy.parentTask());
    EXPECT_EQ(copy.tags().size() + copy.notes().size() + copy.timeEntries().size() + copy.subtaskCount(), 0U);
    EXPECT_EQ(task.project()->tasks().size(), 2U);
}

TEST_F(TaskRules, movingTakesTheTaskAlone) {
    auto &from = make<Project>(context), &to = make<Project>(context);
    auto& task = make<ProjectTask>(context, {.project = &from});
    auto& child = make<ProjectTask>(context, {.project = &from});
    child.setParentTask(&task);
    auto& comment = *addComment(task, "c", testNow);
    moveTask(task, &to, later);
    EXPECT_EQ(task.project(), &to);
    EXPECT_EQ(task.updatedAt(), later);
    EXPECT_EQ(child.project(), &from);
    EXPECT_EQ(child.parentTask(), &task);
    EXPECT_EQ(child.updatedAt(), testNow);
    EXPECT_EQ(comment.project(), &from);
    EXPECT_EQ(from.updatedAt(), testNow);
    moveTask(task, nullptr, later);
    EXPECT_EQ(task.project(), nullptr);
}

TEST_F(TaskRules, commentsAreTrimmedNotes) {
    auto& project = make<Project>(context);
    auto& task = make<ProjectTask>(context, {.project = &project});
    for (const char* blank : {"", " ", "\n\t \r\n", "\u00A0\u2028"})
        EXPECT_EQ(addComment(task, blank, later), nullptr);
    EXPECT_EQ(task.updatedAt(), testNow);
    EXPECT_TRUE(task.notes().empty());
    const Note* note = addComment(task, " \n two\n lines \t\n", later);
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->title(), "");
    EXPECT_EQ(note->content(), "two\n lines");
    EXPECT_EQ(note->project(), &project);
    EXPECT_THAT(task.notes(), ElementsAre(note));
    EXPECT_EQ(note->createdAt(), later);
    EXPECT_EQ(task.updatedAt(), later);
    EXPECT_EQ(addComment(make<ProjectTask>(context), "x", later)->project(), nullptr);
}

TEST_F(TaskRules, deletionsAreConfirmedInWords) {
    struct Case {
        int entries, notes, subtasks;
        const char* message;
    };
    for (const Case& each : {
             Case{0, 0, 0, "This permanently deletes “t”. This can’t be undone."},
             {1, 0, 0, "This permanently deletes “t” and its 1 time entry. This can’t be undone."},
             {2, 0, 0, "This permanently deletes “t” and its 2 time entries. This can’t be undone."},
             {0, 1, 0, "This permanently deletes “t” and its 1 note. This can’t be undone."},
             {1, 2, 1,
              "This permanently deletes “t” and its 1 time entry and 2 notes. Its 1 subtask will be kept as top-level "
              "tasks. This can’t be undone."},
             {0, 0, 3,
              "This permanently deletes “t”. Its 3 subtasks will be kept as top-level tasks. This can’t be undone."},
         }) {
        auto& task = make<ProjectTask>(context, {.title = "t"});
        for (int i = 0; i < each.entries; ++i)
            make<TimeEntry>(context, {.task = &task});
        for (int i = 0; i < each.notes; ++i)
            make<Note>(context, {.task = &task});
        for (int i = 0; i < each.subtasks; ++i)
            make<ProjectTask>(context).setParentTask(&task);
        EXPECT_EQ(deletionOfTask(task), (Confirmation{"Delete Task?", each.message}));
    }
    EXPECT_EQ(deletionOfTasks(3),
              (Confirmation{"Delete 3 Tasks?",
                            "This permanently deletes them with their time entries and notes. This can’t be undone."}));
    EXPECT_EQ(deletionOfNote(make<Note>(context, {.content = "\nhead\nbody"})),
              (Confirmation{"Delete Note?", "This permanently deletes “head”. This can’t be undone."}));
}

TEST_F(TaskRules, archivingHidesWhatIsBelow) {
    for (const bool projectArchived : {false, true}) {
        for (const bool clientArchived : {false, true}) {
            auto& client = make<Client>(context);
            auto& project = make<Project>(context);
            auto& task = make<ProjectTask>(context, {.project = &project});
            project.setArchived(projectArchived);
            client.setArchived(clientArchived);
            EXPECT_EQ(task.isHidden(), projectArchived) << "without a client";
            project.setClient(&client);
            EXPECT_EQ(project.isHidden(), projectArchived || clientArchived);
            EXPECT_EQ(task.isHidden(), projectArchived || clientArchived);
        }
    }
    EXPECT_FALSE(make<ProjectTask>(context).isHidden());
}

} // namespace
} // namespace quillorn
