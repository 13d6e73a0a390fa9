#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Names = std::vector<std::string>;

TEST(ModelContext, keepsEachRowAsOneObject) {
    MemoryStore store;
    ModelContext maker(*store.container);
    auto& made = make<Project>(maker, {.name = "Site"});
    make<ProjectTask>(maker, {.title = "Draw", .project = &made});
    maker.save();
    EXPECT_EQ(maker.find<Project>(made.id()), &made) << "also for the context that made it";

    ModelContext context(*store.container);
    auto* project = context.find<Project>(made.id());
    ASSERT_NE(project, nullptr);
    EXPECT_NE(project, &made);
    EXPECT_EQ(context.find<Project>(made.id()), project);
    EXPECT_THAT(context.fetch<Project>(), ElementsAre(project));
    auto* task = *project->tasks().begin();
    EXPECT_EQ(task->project(), project);
    EXPECT_EQ(context.find<ProjectTask>(task->id()), task);
    EXPECT_EQ(context.find<ProjectTask>(project->id()), nullptr);
    EXPECT_EQ(&task->context(), &context);
}

TEST(ModelContext, fetchesWhatTheQuerySaysInItsOrder) {
    MemoryStore store;
    ModelContext context(*store.container);
    for (const char* name : {"b", "c", "a"})
        make<Tag>(context, {.name = name, .color = name[0] == 'c' ? "red" : "#FFF"});
    EXPECT_THAT(context.fetch<Tag>(), IsEmpty()) << "queries don't see what is not saved";
    context.save();
    EXPECT_THAT(namesOf(context.fetch<Tag>()), ElementsAre("b", "c", "a"));
    EXPECT_THAT(namesOf(context.fetch<Tag>({.order = "name DESC"})), ElementsAre("c", "b", "a"));
    EXPECT_THAT(namesOf(context.fetch<Tag>({.where = "color = ? OR name = ?", .values = {std::string("red"), "a"}})),
                ElementsAre("c", "a"));
}

TEST(ModelContext, findsTheOldestOfSeveralRecordsWithOneId) {
    TestStore store;
    ModelContext maker(*store.container);
    const UUID id = make<Tag>(maker, {.name = "old"}).id();
    make<Tag>(maker, {.name = "new"});
    maker.save();
    ForeignConnection(store.file()).execute("UPDATE Tag SET id = (SELECT id FROM Tag WHERE name = 'old')");
    ModelContext context(*store.container);
    EXPECT_EQ(context.find<Tag>(id)->name(), "old");
    EXPECT_EQ(context.fetch<Tag>().size(), 2U);
}

TEST(ModelContext, readsEveryFieldAsItWasWritten) {
    MemoryStore store;
    ModelContext maker(*store.container);
    const std::string odd("nul \0 and 'quote' 🟠", 21);
    const UUID group = make<ProjectDivider>(maker, {.title = "G", .sortOrder = -3}).id();
    auto& project = make<Project>(maker, {.name = odd, .projectDescription = "", .color = "x"});
    project.setGroupID(group);
    project.setSortOrder(INT64_MAX);
    auto& task = make<ProjectTask>(maker, {.dueDate = Date(std::chrono::microseconds(-1)), .project = &project});
    task.setDueHasTime(true);
    task.setPriority(TaskPriority::urgent);
    maker.save();

    ModelContext context(*store.container);
    const auto* read = context.find<Project>(project.id());
    EXPECT_EQ(read->name(), odd);
    EXPECT_EQ(read->projectDescription(), "") << "empty is not absent";
    EXPECT_EQ(read->groupID(), group);
    EXPECT_EQ(read->sortOrder(), INT64_MAX);
    EXPECT_EQ(read->createdAt(), testNow);
    EXPECT_EQ(read->client(), nullptr);
    const auto* readTask = context.find<ProjectTask>(task.id());
    EXPECT_EQ(readTask->dueDate(), Date(std::chrono::microseconds(-1)));
    EXPECT_TRUE(readTask->dueHasTime());
    EXPECT_EQ(readTask->priority(), TaskPriority::urgent);
    EXPECT_EQ(readTask->taskDescription(), std::nullopt);
    EXPECT_EQ(context.fetch<ProjectDivider>()[0]->sortOrder(), -3);
}

/// Tasks in five projects of two clients, each with an entry, a comment and a tag; every second one is a subtask.
void populate(ModelContext& context, int taskCount) {
    std::vector<Project*> projects;
    std::vector<Tag*> tags;
    for (int i = 0; i < 2; ++i) {
        auto& client = make<Client>(context);
        for (int j = 0; j < 3; ++j)
            projects.emplace_back(&make<Project>(context))->setClient(&client);
    }
    for (int i = 0; i < 3; ++i)
        tags.push_back(&make<Tag>(context));
    ProjectTask* previous = nullptr;
    for (int i = 0; i < taskCount; ++i) {
        auto& task = make<ProjectTask>(context, {.project = projects[static_cast<std::size_t>(i) % 5]});
        task.setTags({tags[static_cast<std::size_t>(i) % 3]});
        if (i % 2 == 1)
            task.setParentTask(previous);
        make<TimeEntry>(context, {.task = &task});
        make<Note>(context, {.project = task.project(), .task = &task});
        previous = &task;
    }
    context.save();
}

TEST(Relations, loadInAConstantNumberOfStatements) {
    std::vector<std::uint64_t> costs;
    for (const int rows : {10, 500, 501, 1000}) {
        MemoryStore store;
        {
            ModelContext maker(*store.container);
            populate(maker, rows);
        }
        ModelContext context(*store.container);
        const auto before = store.container->executedStatements();
        std::size_t count = 0;
        for (const auto* task : context.fetch<ProjectTask>()) {
            count += task->project()->client() != nullptr ? 1U : 0U;
            count += task->timeEntries().size() + task->notes().size() + task->tags().size() + task->subtaskCount();
            count += (*task->notes().begin())->project() == task->project() ? 1U : 0U;
            count += task->parentTask() != nullptr ? 1U : 0U;
        }
        for (const auto* tag : context.fetch<Tag>())
            count += tag->tasks().size();
        for (const auto* client : context.fetch<Client>())
            for (const auto* project : client->projects())
                count += project->taskCount() + project->notes().size() + project->directTimeEntries().size();
        EXPECT_EQ(count, static_cast<std::size_t>(rows * 8 + rows / 2 * 2));
        costs.push_back(store.container->executedStatements() - before);
    }
    EXPECT_LE(costs[0], 20U);
    EXPECT_THAT(costs, testing::Each(costs[0]));
}

/// Moves a child from one parent to another and to none, with the parents' lists loaded before or after the change.
template <class Child, class Parent>
void checkBothSides(const char* relation, void (Child::*set)(Parent*), Parent* (Child::*get)() const,
                    const List<Child>& (Parent::*list)() const) {
    SCOPED_TRACE(relation);
    for (const bool loadedBefore : {true, false}) {
        SCOPED_TRACE(loadedBefore);
        MemoryStore store;
        UUID childId, fromId, toId;
        {
            ModelContext context(*store.container);
            auto& child = make<Child>(context);
            auto& from = make<Parent>(context);
            EXPECT_TRUE((from.*list)().isAbsent()) << "a new object's list";
            (child.*set)(&from);
            EXPECT_THAT((from.*list)(), ElementsAre(&child));
            childId = child.id(), fromId = from.id(), toId = make<Parent>(context).id();
            context.save();
            EXPECT_THAT((from.*list)(), ElementsAre(&child));
        }
        ModelContext context(*store.container);
        auto& child = *context.find<Child>(childId);
        auto& from = *context.find<Parent>(fromId);
        auto& to = *context.find<Parent>(toId);
        if (loadedBefore) {
            EXPECT_THAT((from.*list)(), ElementsAre(&child));
            EXPECT_THAT((to.*list)(), IsEmpty());
            EXPECT_FALSE((to.*list)().isAbsent()) << "a stored object's list is empty, not absent";
        }
        auto& added = make<Child>(context);
        (added.*set)(&to);
        (child.*set)(&to);
        EXPECT_EQ((child.*get)(), &to);
        EXPECT_THAT((from.*list)(), IsEmpty());
        EXPECT_THAT((to.*list)(), UnorderedElementsAre(&child, &added));
        (child.*set)(nullptr);
        EXPECT_THAT((to.*list)(), ElementsAre(&added));
        (child.*set)(&to);
        context.save();
        EXPECT_FALSE(context.hasChanges());

        ModelContext reader(*store.container);
        EXPECT_EQ((reader.find<Child>(childId)->*get)(), reader.find<Parent>(toId));
        EXPECT_THAT((reader.find<Parent>(fromId)->*list)(), IsEmpty());
        EXPECT_THAT((reader.find<Parent>(toId)->*list)(),
                    ElementsAre(reader.find<Child>(childId), reader.find<Child>(added.id())));
    }
}

TEST(Relations, bothSidesAgreeBeforeAndAfterTheSave) {
    checkBothSides("Project.client", &Project::setClient, &Project::client, &Client::projects);
    checkBothSides("ProjectTask.project", &ProjectTask::setProject, &ProjectTask::project, &Project::tasks);
    checkBothSides("ProjectTask.parentTask", &ProjectTask::setParentTask, &ProjectTask::parentTask,
                   &ProjectTask::subtasks);
    checkBothSides("TimeEntry.task", &TimeEntry::setTask, &TimeEntry::task, &ProjectTask::timeEntries);
    checkBothSides("TimeEntry.project", &TimeEntry::setProject, &TimeEntry::project, &Project::directTimeEntries);
    checkBothSides("Note.task", &Note::setTask, &Note::task, &ProjectTask::notes);
    checkBothSides("Note.project", &Note::setProject, &Note::project, &Project::notes);
    checkBothSides("ChatMessage.project", &ChatMessage::setProject, &ChatMessage::project, &Project::chatMessages);
    checkBothSides("ChatMessage.client", &ChatMessage::setClient, &ChatMessage::client, &Client::chatMessages);
}

TEST(Links, bothSidesAgreeBeforeAndAfterTheSave) {
    MemoryStore store;
    {
        ModelContext context(*store.container);
        auto& a = make<Tag>(context, {.name = "a"});
        auto& b = make<Tag>(context, {.name = "b"});
        auto& task = make<ProjectTask>(context, {.title = "t"});
        EXPECT_TRUE(task.tags().isAbsent());
        task.setTags({&b, nullptr, &a, &b});
        EXPECT_THAT(namesOf(task.tags()), ElementsAre("b", "a")) << "once each";
        EXPECT_THAT(a.tasks(), ElementsAre(&task));
        context.save();
    }
    for (const bool loadedBefore : {true, false}) {
        ModelContext context(*store.container);
        auto& task = named<ProjectTask>(context, "t");
        auto &a = named<Tag>(context, "a"), &b = named<Tag>(context, "b"), &c = make<Tag>(context, {.name = "c"});
        if (loadedBefore) {
            EXPECT_THAT(namesOf(task.tags()), ElementsAre("a", "b"));
            EXPECT_THAT(b.tasks(), ElementsAre(&task));
        }
        auto& other = make<ProjectTask>(context, {.title = "u"});
        other.setTags({&a, &c});
        task.setTags({&a, &c});
        EXPECT_THAT(a.tasks(), ElementsAre(&task, &other));
        EXPECT_THAT(b.tasks(), IsEmpty());
        EXPECT_THAT(c.tasks(), UnorderedElementsAre(&task, &other));
        task.setTags({&a, &b, &c});
        task.setTags({&c, &b});
        EXPECT_THAT(a.tasks(), ElementsAre(&other));
        EXPECT_THAT(b.tasks(), ElementsAre(&task));
    }
    ModelContext writer(*store.container);
    auto& task = named<ProjectTask>(writer, "t");
    task.setTags({&named<Tag>(writer, "b")});
    task.setTags({&named<Tag>(writer, "b"), &make<Tag>(writer, {.name = "new"})});
    writer.save();
    ModelContext reader(*store.container);
    EXPECT_THAT(namesOf(named<ProjectTask>(reader, "t").tags()), ElementsAre("b", "new"));
    EXPECT_THAT(namesOf(named<Tag>(reader, "new").tasks()), ElementsAre("t"));
    EXPECT_THAT(named<Tag>(reader, "a").tasks(), IsEmpty());
}

TEST(Relations, loadedLaterTakeInWhatIsNotSaved) {
    MemoryStore store;
    {
        ModelContext context(*store.container);
        auto& project = make<Project>(context, {.name = "p"});
        for (const char* title : {"stays", "leaves", "goes"})
            make<ProjectTask>(context, {.title = title, .project = &project});
        make<ProjectTask>(context, {.title = "comes"});
        context.save();
    }
    ModelContext context(*store.container);
    auto& project = named<Project>(context, "p");
    named<ProjectTask>(context, "leaves").setProject(nullptr);
    context.remove(named<ProjectTask>(context, "goes"));
    make<ProjectTask>(context, {.title = "new", .project = &project});
    named<ProjectTask>(context, "comes").setProject(&project);
    EXPECT_THAT(namesOf(project.tasks()), ElementsAre("stays", "comes", "new")) << "new records last";
}

TEST(Relations, failedLoadingIsTriedAgain) {
    TestStore store;
    {
        ModelContext context(*store.container);
        make<ProjectTask>(context, {.title = "t", .project = &make<Project>(context, {.name = "p"})});
        context.save();
    }
    ModelContext context(*store.container);
    auto& project = named<Project>(context, "p");
    context.endReading();
    ForeignConnection foreign(store.file());
    foreign.execute("ALTER TABLE ProjectTask RENAME COLUMN project TO hidden");
    EXPECT_THROW(project.tasks(), std::runtime_error);
    context.endReading();
    foreign.execute("ALTER TABLE ProjectTask RENAME COLUMN hidden TO project");
    EXPECT_THAT(namesOf(project.tasks()), ElementsAre("t"));
}

} // namespace
} // namespace quillorn
