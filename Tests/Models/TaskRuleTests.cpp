#include "Models/TaskActions.h"
#include "Support/StoreTest.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;
using enum TaskStatus;

const Date earlier = testNow + 1h, later = testNow + 2h;

struct TaskRules : StoreTest<TestStore> {
    std::vector<std::string> posts;
    Observation token = notifications.observe(quillornTaskCompleted, [this](const Notification& note) {
        auto* task = std::any_cast<ProjectTask*>(note.object);
        EXPECT_EQ(std::any_cast<UUID>(note.userInfo.at("taskId")), task->id());
        for (const TimeEntry* entry : task->timeEntries())
            EXPECT_FALSE(entry->isRunning()) << "entries end before the post";
        posts.push_back(task->title());
    });
};

TEST_F(TaskRules, statusAndCompletionFollowEachOtherFromEveryState) {
    for (const TaskStatus from : {todo, inProgress, review, done}) {
        for (int each = 0; each < 12; ++each) {
            // setStatus() to each of the four, setCompleted() to false and to true; and all that for completed tasks.
            const int operation = each % 6;
            const bool completed = each >= 6, byStatus = operation < 4;
            const TaskStatus reopened = from == done ? todo : from, completion = operation == 5 ? done : reopened;
            const TaskStatus to = byStatus ? static_cast<TaskStatus>(operation) : completion;
            SCOPED_TRACE(std::string(label(from)) + " " + std::to_string(each));
            UUID id;
            elsewhere([&](ModelContext& other) { id = make<ProjectTask>(other, {.status = from}).id(); });
            if (completed)
                ForeignConnection(file()).execute("UPDATE ProjectTask SET completedAt = " +
                                                  std::to_string(earlier.time_since_epoch().count()));
            ModelContext reader(*container);
            auto& task = *reader.find<ProjectTask>(id);
            posts.clear();
            byStatus ? task.setStatus(to, later) : task.setCompleted(to == done, later);
            EXPECT_EQ(task.status(), to);
            EXPECT_EQ(task.updatedAt(), later);
            const Date date = byStatus && completed ? earlier : later;
            EXPECT_EQ(task.completedAt(), to == done ? std::optional(date) : std::nullopt);
            EXPECT_EQ(posts.size(), to == done && !completed ? 1U : 0U);
        }
    }
}

TEST_F(TaskRules, completingEndsTheRunningEntriesOfThisTaskAlone) {
    for (const bool byStatus : {true, false}) {
        posts.clear();
        auto &parent = make<ProjectTask>(context, {.title = "parent"}), &child = make<ProjectTask>(context);
        child.setParentTask(&parent);
        const auto entry = [&](ProjectTask& task, Date start) -> TimeEntry& {
            return make<TimeEntry>(context, {.task = &task, .startTime = start});
        };
        auto &first = entry(parent, testNow), &future = entry(parent, later + 1h), &ended = entry(parent, testNow);
        auto &others = entry(child, testNow), &removed = entry(parent, testNow);
        ended.setEndTime(earlier);
        context.save();
        context.remove(removed);
        byStatus ? parent.setStatus(done, later) : parent.setCompleted(true, later);
        EXPECT_EQ(first.endTime(), later);
        EXPECT_EQ(future.endTime(), later);
        EXPECT_EQ(ended.endTime(), earlier);
        EXPECT_TRUE(others.isRunning());
        EXPECT_FALSE(child.isCompleted());
        EXPECT_EQ(child.updatedAt(), testNow);
        future.setEndTime(std::nullopt);
        parent.setCompleted(true, later + 1h);
        EXPECT_TRUE(future.isRunning()) << "a repeated completion has no effects";
        EXPECT_THAT(posts, ElementsAre("parent"));
        context.save();
        ModelContext check(*container);
        EXPECT_EQ(check.find<TimeEntry>(first.id())->endTime(), later);
        EXPECT_EQ(check.find<ProjectTask>(parent.id())->completedAt(), later + 1h);
    }
}

TEST_F(TaskRules, duplicatingStartsOver) {
    auto& project = make<Project>(context);
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
    task.setParentTask(&make<ProjectTask>(context));
    task.setTags({&make<Tag>(context)});
    make<Note>(context, {.task = &task});
    make<TimeEntry>(context, {.task = &task});
    make<ProjectTask>(context).setParentTask(&task);
    task.setCompleted(true, earlier);
    const UUID id = duplicateTask(task, later).id();
    context.save();
    ModelContext check(*container);
    const auto& copy = *check.find<ProjectTask>(id);
    EXPECT_NE(id, task.id());
    EXPECT_EQ(copy.title(), "t (Copy)");
    EXPECT_EQ(*copy.taskDescription() + *copy.sourceTitle() + *copy.sourceURL(), "dsourcelink");
    EXPECT_EQ(copy.dueDate(), earlier);
    EXPECT_EQ(copy.priority(), TaskPriority::urgent);
    EXPECT_EQ(copy.project()->id(), project.id());
    EXPECT_EQ(copy.createdAt(), later);
    EXPECT_EQ(copy.status(), todo);
    EXPECT_FALSE(copy.sortOrder() != 0 || copy.dueHasTime() || copy.isCompleted() || copy.parentTask());
    EXPECT_EQ(copy.tags().size() + copy.notes().size() + copy.timeEntries().size() + copy.subtaskCount(), 0U);
}

TEST_F(TaskRules, commentsAreTrimmedNotes) {
    auto& project = make<Project>(context);
    auto& task = make<ProjectTask>(context, {.project = &project});
    for (const char* blank : {"", " ", "\n\t \r\n", "\u00A0\u2028"})
        EXPECT_EQ(addComment(task, blank, later), nullptr);
    EXPECT_EQ(task.updatedAt(), testNow);
    const Note* note = addComment(task, " \n two\n lines \t\n", later);
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->title() + note->content(), "two\n lines");
    EXPECT_EQ(note->project(), &project);
    EXPECT_THAT(task.notes(), ElementsAre(note));
    EXPECT_EQ(note->createdAt(), later);
    EXPECT_EQ(task.updatedAt(), later);
}

TEST_F(TaskRules, deletionsAreConfirmedInWords) {
    struct Case {
        int entries, notes, subtasks;
        const char* words;
    };
    const Case cases[] = {
        // clang-format off
        {0, 0, 0, "."}, {2, 0, 0, " and its 2 time entries."},
        {1, 2, 1, " and its 1 time entry and 2 notes. Its 1 subtask will be kept as top-level tasks."},
        {0, 0, 3, ". Its 3 subtasks will be kept as top-level tasks."},
        // clang-format on
    };
    for (const Case& each : cases) {
        auto& task = make<ProjectTask>(context, {.title = "t"});
        for (int i = 0; i < each.entries; ++i)
            make<TimeEntry>(context, {.task = &task});
        for (int i = 0; i < each.notes; ++i)
            make<Note>(context, {.task = &task});
        for (int i = 0; i < each.subtasks; ++i)
            make<ProjectTask>(context).setParentTask(&task);
        const std::string message = std::string("This permanently deletes “t”") + each.words + " This can’t be undone.";
        EXPECT_EQ(deletionOfTask(task), (Confirmation{"Delete Task?", message}));
    }
    EXPECT_EQ(deletionOfTasks(3),
              (Confirmation{"Delete 3 Tasks?",
                            "This permanently deletes them with their time entries and notes. This can’t be undone."}));
    EXPECT_EQ(deletionOfNote(make<Note>(context, {.content = "\nhead\nbody"})),
              (Confirmation{"Delete Note?", "This permanently deletes “head”. This can’t be undone."}));
}

TEST_F(TaskRules, movingTakesTheTaskAlone) {
    auto &from = make<Project>(context), &to = make<Project>(context);
    auto &task = make<ProjectTask>(context, {.project = &from}),
         &child = make<ProjectTask>(context, {.project = &from});
    child.setParentTask(&task);
    const auto& comment = *addComment(task, "c", testNow);
    moveTask(task, &to, later);
    EXPECT_EQ(task.project(), &to);
    EXPECT_EQ(task.updatedAt(), later);
    EXPECT_EQ(child.project(), &from);
    EXPECT_EQ(child.parentTask(), &task);
    EXPECT_EQ(comment.project(), &from);
    for (const Date untouched : {child.updatedAt(), from.updatedAt(), to.updatedAt()})
        EXPECT_EQ(untouched, testNow);
    moveTask(task, nullptr, later);
    EXPECT_EQ(task.project(), nullptr);
}

} // namespace
} // namespace quillorn
