#include "Support/CrowdedStore.h"
#include "Support/StoreTest.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Contexts = StoreTest<TestStore>;
using Relations = StoreTest<MemoryStore>;

TEST_F(Contexts, fetchWhatTheQuerySaysInItsOrder) {
    for (const char* name : {"b", "c", "a"})
        make<Tag>(context, {.name = name, .color = name[0] == 'c' ? "red" : "#FFF"});
    EXPECT_THAT(context.fetch<Tag>(), IsEmpty()) << "queries don't see what is not saved";
    context.save();
    EXPECT_THAT(namesOf(context.fetch<Tag>()), ElementsAre("b", "c", "a"));
    EXPECT_THAT(namesOf(context.fetch<Tag>({.order = "name DESC"})), ElementsAre("c", "b", "a"));
    EXPECT_THAT(namesOf(context.fetch<Tag>({.where = "color = ? OR name = ?", .values = {std::string("red"), "a"}})),
                ElementsAre("c", "a"));
    // The oldest of several records with one id is found.
    ForeignConnection(file()).execute("UPDATE Tag SET id = (SELECT id FROM Tag WHERE name = 'b')");
    ModelContext other(*container);
    EXPECT_EQ(other.find<Tag>(named<Tag>(context, "b").id())->name(), "b");
    EXPECT_EQ(other.fetch<Tag>().size(), 3U);
}

/// Moves a child from one parent to another and to none, with the parents' lists loaded before or after the change.
template <class Child, class Parent>
void checkBothSides(const char* relation, void (Child::*set)(Parent*), Parent* (Child::*get)() const,
                    const List<Child>& (Parent::*list)() const) {
    for (const bool loadedBefore : {true, false}) {
        SCOPED_TRACE(std::string(relation) + (loadedBefore ? " loaded before" : ""));
        MemoryStore store;
        ModelContext maker(*store.container), context(*store.container), reader(*store.container);
        auto& made = make<Child>(maker);
        auto &first = make<Parent>(maker), &second = make<Parent>(maker);
        EXPECT_TRUE((first.*list)().isAbsent()) << "a new object's list";
        (made.*set)(&first);
        EXPECT_THAT((first.*list)(), ElementsAre(&made));
        maker.save();
        EXPECT_THAT((first.*list)(), ElementsAre(&made));

        auto& child = *context.find<Child>(made.id());
        auto &from = *context.find<Parent>(first.id()), &to = *context.find<Parent>(second.id());
        if (loadedBefore) {
            EXPECT_THAT((from.*list)(), ElementsAre(&child));
            EXPECT_TRUE((to.*list)().empty() && !(to.*list)().isAbsent()) << "a stored object's list";
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

        EXPECT_EQ((reader.find<Child>(made.id())->*get)(), reader.find<Parent>(second.id()));
        EXPECT_THAT((reader.find<Parent>(first.id())->*list)(), IsEmpty());
        EXPECT_THAT((reader.find<Parent>(second.id())->*list)(),
                    ElementsAre(reader.find<Child>(made.id()), reader.find<Child>(added.id())));
    }
}

TEST(BothSides, agreeBeforeAndAfterTheSave) {
    // clang-format off
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
    // clang-format on
}

TEST_F(Relations, overLinksAgreeBeforeAndAfterTheSave) {
    elsewhere([](ModelContext& maker) {
        auto &a = make<Tag>(maker, {.name = "a"}), &b = make<Tag>(maker, {.name = "b"});
        auto& task = make<ProjectTask>(maker, {.title = "t"});
        EXPECT_TRUE(task.tags().isAbsent());
        task.setTags({&b, nullptr, &a, &b});
        EXPECT_THAT(namesOf(task.tags()), ElementsAre("b", "a")) << "once each";
        EXPECT_THAT(a.tasks(), ElementsAre(&task));
    });
    for (const bool loadedBefore : {true, false}) {
        ModelContext other(*container);
        auto& task = named<ProjectTask>(other, "t");
        auto &a = named<Tag>(other, "a"), &b = named<Tag>(other, "b"), &c = make<Tag>(other, {.name = "c"});
        if (loadedBefore) {
            EXPECT_THAT(namesOf(task.tags()), ElementsAre("a", "b"));
            EXPECT_THAT(b.tasks(), ElementsAre(&task));
        }
        auto& second = make<ProjectTask>(other, {.title = "u"});
        second.setTags({&a, &c});
        task.setTags({&a, &c});
        EXPECT_THAT(a.tasks(), ElementsAre(&task, &second));
        EXPECT_THAT(b.tasks(), IsEmpty());
        EXPECT_THAT(c.tasks(), UnorderedElementsAre(&task, &second));
        task.setTags({&a, &b, &c});
        task.setTags({&c, &b});
        EXPECT_THAT(a.tasks(), ElementsAre(&second));
        EXPECT_THAT(b.tasks(), ElementsAre(&task));
    }
    elsewhere([](ModelContext& writer) {
        auto& task = named<ProjectTask>(writer, "t");
        task.setTags({&named<Tag>(writer, "b")});
        task.setTags({&named<Tag>(writer, "b"), &make<Tag>(writer, {.name = "new"})});
    });
    EXPECT_THAT(namesOf(named<ProjectTask>(context, "t").tags()), ElementsAre("b", "new"));
    EXPECT_THAT(namesOf(named<Tag>(context, "new").tasks()), ElementsAre("t"));
    EXPECT_THAT(named<Tag>(context, "a").tasks(), IsEmpty());
}

TEST_F(Relations, loadedLaterTakeInWhatIsNotSaved) {
    elsewhere([](ModelContext& maker) {
        auto& project = make<Project>(maker, {.name = "p"});
        for (const char* title : {"stays", "leaves", "goes"})
            make<ProjectTask>(maker, {.title = title, .project = &project});
        make<ProjectTask>(maker, {.title = "comes"});
    });
    auto& project = named<Project>(context, "p");
    named<ProjectTask>(context, "leaves").setProject(nullptr);
    context.remove(named<ProjectTask>(context, "goes"));
    make<ProjectTask>(context, {.title = "new", .project = &project});
    named<ProjectTask>(context, "comes").setProject(&project);
    EXPECT_THAT(namesOf(project.tasks()), ElementsAre("stays", "comes", "new")) << "new records last";
}

TEST_F(Contexts, tryAFailedLoadingAgain) {
    elsewhere([](ModelContext& maker) {
        make<ProjectTask>(maker, {.title = "t", .project = &make<Project>(maker, {.name = "p"})});
    });
    auto& project = named<Project>(context, "p");
    context.endReading();
    ForeignConnection foreign(file());
    foreign.execute("ALTER TABLE ProjectTask RENAME COLUMN project TO hidden");
    EXPECT_THROW(project.tasks(), std::runtime_error);
    context.endReading();
    foreign.execute("ALTER TABLE ProjectTask RENAME COLUMN hidden TO project");
    EXPECT_THAT(namesOf(project.tasks()), ElementsAre("t"));
}

} // namespace
} // namespace quillorn
