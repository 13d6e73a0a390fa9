#include "Store/MainContext.h"
#include "Store/StoreError.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/ScopedLimit.h"
#include "Support/StoreTest.h"

#include <gmock/gmock.h>
#include <sstream>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

struct Save : StoreTest<TestStore> {
    int posts = 0;
    Observation token = notifications.observe(storeDidSave, [this](const Notification&) { ++posts; });
};
using Delete = StoreTest<MemoryStore>;

TEST_F(Save, writesOnlyTheChangedColumns) {
    auto& task = make<ProjectTask>(context, {.title = "old", .taskDescription = "old"});
    context.save();
    task.setTitle("new");
    elsewhere([&](ModelContext& other) {
        auto& same = *other.find<ProjectTask>(task.id());
        same.setTaskDescription("new");
        same.setParentTask(&make<ProjectTask>(other));
    });
    context.save();
    ModelContext reader(*container);
    const auto& read = *reader.find<ProjectTask>(task.id());
    EXPECT_EQ(read.title() + *read.taskDescription(), "newnew");
    EXPECT_NE(read.parentTask(), nullptr);
}

TEST_F(Save, equalAssignmentWritesNothing) {
    auto& project = make<Project>(context);
    auto& task = make<ProjectTask>(context, {.title = "t", .dueDate = testNow, .project = &project});
    auto& tag = make<Tag>(context);
    task.setTags({&tag});
    context.save();
    task.setTitle("t");
    task.setDueDate(testNow);
    task.setTaskDescription(std::nullopt);
    task.setProject(&project);
    task.setParentTask(nullptr);
    task.setTags({&tag, &tag});
    task.setTags({});
    task.setTags({&tag});
    EXPECT_FALSE(context.hasChanges());
    const auto before = container->executedStatements();
    context.save();
    EXPECT_EQ(container->executedStatements(), before);
    EXPECT_EQ(posts, 1);
}

TEST_F(Save, doesNotBringBackARowThatSomebodyElseDeleted) {
    auto& task = make<ProjectTask>(context, {.title = "t"});
    auto& tag = make<Tag>(context, {.name = "tag"});
    context.save();
    elsewhere([&](ModelContext& other) { other.remove(*other.find<ProjectTask>(task.id())); });
    task.setTitle("changed");
    task.setTags({&tag});
    tag.setName("renamed");
    context.save();
    EXPECT_TRUE(task.isDeleted());
    EXPECT_THAT(tag.tasks(), IsEmpty());
    ModelContext reader(*container);
    EXPECT_THAT(reader.fetch<ProjectTask>(), IsEmpty());
    EXPECT_THAT(namesOf(reader.fetch<Tag>()), ElementsAre("renamed"));
    EXPECT_EQ(ForeignConnection(file()).integer("SELECT count(*) FROM ProjectTask_Tag"), 0);
}

TEST(FailingSave, leavesTheStoreAndTheObjectsAsTheyWere) {
    const std::string refuse = " BEGIN SELECT RAISE(ABORT, 'refused'); END", accept = "DROP TRIGGER refuse";
    const std::pair<std::string, std::string> faults[] = {
        {"CREATE TRIGGER refuse AFTER DELETE ON Tag" + refuse, accept},
        {"CREATE TRIGGER refuse BEFORE INSERT ON ProjectTask_Tag" + refuse, accept},
        {"", ""}, // a full disk
    };
    for (const auto& [begin, end] : faults) {
        SCOPED_TRACE(begin);
        TestStore store;
        ModelContext context(*store.container);
        auto& task = make<ProjectTask>(context, {.title = "t"});
        auto &goes = make<Tag>(context, {.name = "goes"}), &linked = make<Tag>(context, {.name = "linked"});
        context.save();
        int posts = 0;
        const auto token = store.notifications.observe(storeDidSave, [&](const Notification&) { ++posts; });

        task.setTitle(std::string(100'000, 'x'));
        task.setTags({&linked});
        auto& comment = make<Note>(context, {.title = "comment", .task = &task});
        context.remove(goes);
        ForeignConnection(store.file()).execute(begin);
        {
            const auto full = begin.empty() ? std::make_unique<FullDisk>() : nullptr;
            EXPECT_THROW(context.save(), StoreError);
            EXPECT_THROW(context.save(), StoreError) << "and once more";
        }
        EXPECT_EQ(posts, 0);
        EXPECT_TRUE(context.hasChanges());
        EXPECT_EQ(comment.key(), 0);
        EXPECT_EQ(task.title().size(), 100'000U);
        EXPECT_THAT(task.notes(), ElementsAre(&comment));
        ForeignConnection(store.file()).execute(end);
        change(*store.container, [](ModelContext& other) {
            EXPECT_THAT(namesOf(other.fetch<ProjectTask>()), ElementsAre("t"));
            EXPECT_THAT(namesOf(other.fetch<Tag>()), ElementsAre("goes", "linked"));
            EXPECT_THAT(other.fetch<Note>(), IsEmpty());
            EXPECT_THAT(named<Tag>(other, "linked").tasks(), IsEmpty());
            make<Note>(other, {.title = "between"}); // takes the key that the failed save had in view
        });
        context.save();
        EXPECT_FALSE(context.hasChanges());
        EXPECT_EQ(posts, 2);
        ModelContext reader(*store.container);
        EXPECT_THAT(namesOf(reader.fetch<Tag>()), ElementsAre("linked"));
        EXPECT_THAT(namesOf(reader.fetch<Note>()), ElementsAre("between", "comment"));
        const auto& read = *reader.find<ProjectTask>(task.id());
        EXPECT_EQ(read.title().size(), 100'000U);
        EXPECT_THAT(namesOf(read.notes()), ElementsAre("comment"));
        EXPECT_THAT(namesOf(read.tags()), ElementsAre("linked"));
    }
}

TEST_F(Save, failingOfAnUpdateGivesUpTheLock) {
    ModelContext update(*container, ModelContext::Intent::update);
    make<Note>(update, {.title = "a", .content = std::string(100'000, 'x')});
    {
        const FullDisk full;
        EXPECT_THROW(update.save(), StoreError);
    }
    elsewhere([](ModelContext& other) { make<Note>(other, {.title = "b"}); });
    update.save();
    EXPECT_THAT(namesOf(context.fetch<Note>()), ElementsAre("b", "a"));
}

/// A client with everything under it, a second project with a subtask of the first one's task, and what is loose.
void populate(ModelContext& context) {
    auto& client = make<Client>(context, {.name = "client"});
    auto &project = make<Project>(context, {.name = "project"}), &away = make<Project>(context, {.name = "away"});
    project.setClient(&client);
    make<ProjectDivider>(context, {.title = "divider", .clientID = client.id()});
    auto& task = make<ProjectTask>(context, {.title = "task", .project = &project});
    const auto subtask = [&](const char* title, ProjectTask& parent, Project& home) -> ProjectTask& {
        auto& made = make<ProjectTask>(context, {.title = title, .project = &home});
        made.setParentTask(&parent);
        return made;
    };
    auto& sub = subtask("sub", task, project);
    subtask("subsub", sub, project);
    subtask("foreign", task, away);
    task.setTags({&make<Tag>(context, {.name = "tag"})});
    sub.setTags({*task.tags().begin()});
    make<TimeEntry>(context, {.task = &task, .title = "entry"});
    make<TimeEntry>(context, {.task = &sub, .title = "subentry"});
    make<TimeEntry>(context, {.project = &project, .title = "direct"});
    make<TimeEntry>(context, {.title = "loose"});
    make<Note>(context, {.title = "note", .project = &project});
    make<Note>(context, {.title = "comment", .project = &project, .task = &task});
    make<ChatMessage>(context, {.content = "projectchat", .project = &project});
    make<ChatMessage>(context, {.content = "clientchat", .client = &client});
    context.save();
}

std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// Every record by name, with what it refers to: "sub<project<task".
std::vector<std::string> everything(ModelContext& context) {
    std::vector<std::string> all;
    const auto add = [&](const auto& record, const auto*... references) {
        all.push_back(nameOf(record));
        ((all.back() += references != nullptr ? "<" + nameOf(*references) : ""), ...);
    };
    for (const auto* record : context.fetch<Client>())
        add(*record);
    for (const auto* record : context.fetch<Project>())
        add(*record, record->client());
    for (const auto* record : context.fetch<ProjectDivider>())
        add(*record);
    for (const auto* record : context.fetch<ProjectTask>())
        add(*record, record->project(), record->parentTask(),
            record->tags().empty() ? nullptr : *record->tags().begin());
    for (const auto* record : context.fetch<Tag>())
        add(*record);
    for (const auto* record : context.fetch<TimeEntry>())
        add(*record, record->task(), record->project());
    for (const auto* record : context.fetch<Note>())
        add(*record, record->task(), record->project());
    for (const auto* record : context.fetch<ChatMessage>())
        add(*record, record->project(), record->client());
    return all;
}

template <class Type>
void removing(ModelContext& context, const std::string& name) {
    context.remove(named<Type>(context, name));
}

TEST(DeleteRules, takeAlongWhatBelongsAndClearWhatRefers) {
    struct Case {
        const char* names;
        void (*remove)(ModelContext&, const std::string& name);
        std::string gone;    // of everything(), what is no more
        std::string instead; // and what came in its place
    };
    const std::string below = "project<client task<project<tag sub<project<task<tag subsub<project<sub entry<task "
                              "subentry<sub direct<project note<project comment<task<project projectchat<project "
                              "foreign<away<task";
    const Case cases[] = {
        // clang-format off
        {"comment", removing<Note>, "comment<task<project", ""},
        {"tag", removing<Tag>, "tag task<project<tag sub<project<task<tag", "task<project sub<project<task"},
        {"sub", removing<ProjectTask>, "sub<project<task<tag subentry<sub subsub<project<sub", "subsub<project"},
        {"task", removing<ProjectTask>, "task<project<tag entry<task comment<task<project sub<project<task<tag "
            "foreign<away<task", "sub<project<tag foreign<away"},
        {"subsub task sub", removing<ProjectTask>, "task<project<tag sub<project<task<tag subsub<project<sub "
            "entry<task subentry<sub comment<task<project foreign<away<task", "foreign<away"},
        {"project", removing<Project>, below, "foreign<away"},
        {"client", removing<Client>, "client clientchat<client " + below, "foreign<away"},
        // clang-format on
    };
    for (const auto& [names, remove, gone, instead] : cases) {
        for (const std::string loaded : {"nothing", "rows", "relations"}) {
            SCOPED_TRACE(names + (" with loaded " + loaded));
            MemoryStore store;
            change(*store.container, populate);
            ModelContext before(*store.container), context(*store.container), reader(*store.container);
            auto expected = everything(before);
            std::vector<ProjectTask*> tasks;
            if (loaded != "nothing")
                tasks = context.fetch<ProjectTask>();
            if (loaded == "relations")
                everything(context);
            for (const std::string& name : words(names))
                remove(context, name);
            context.save();

            const auto now = everything(reader);
            for (const std::string& line : words(gone))
                std::erase(expected, line);
            for (const std::string& line : words(instead))
                expected.push_back(line);
            EXPECT_THAT(now, UnorderedElementsAreArray(expected));
            EXPECT_EQ(everything(context), now) << "the objects at hand agree with the store";
            for (const ProjectTask* task : tasks) {
                EXPECT_EQ(task->isDeleted(), reader.find<ProjectTask>(task->id()) == nullptr) << task->title();
                for (const ProjectTask* subtask : task->subtasks())
                    EXPECT_FALSE(subtask->isDeleted()) << task->title();
            }
        }
    }
}

TEST_F(Delete, andEveryOtherChangeIsToldOnceWithTheCascades) {
    populate(context);
    FakeClock clock;
    ManualQueue queue(clock);
    MainContext main(*container, queue, log);
    std::vector<std::string> rows;
    std::vector<UUID> deleted;
    const auto token = main.observe([&](const ChangeSet& changes) {
        for (const auto& row : changes.rows) {
            const char* const kinds[] = {" related", " updated", " inserted", " deleted"};
            EXPECT_FALSE(row.isOfOthers);
            rows.push_back(std::string(row.type->name) + kinds[static_cast<int>(row.change)]);
            if (row.change == RowChange::deleted && row.type == &ProjectTask::entityType())
                deleted.push_back(row.id);
        }
    });
    const auto saved = [&] {
        rows.clear();
        context.save();
        queue.runPosted();
        return rows;
    };
    auto& added = make<ProjectTask>(context, {.title = "new"});
    added.setTags({&named<Tag>(context, "tag")});
    named<Project>(context, "away").setName("renamed");
    EXPECT_THAT(saved(), UnorderedElementsAre("ProjectTask inserted", "Tag related", "Project updated"));
    added.setTags({});
    EXPECT_THAT(saved(), UnorderedElementsAre("ProjectTask related", "Tag related"));
    named<ProjectTask>(context, "task").setTitle("task"); // no change
    named<ProjectTask>(context, "sub").setTitle("changed");
    const UUID gone = named<ProjectTask>(context, "task").id();
    removing<ProjectTask>(context, "task");
    EXPECT_THAT(saved(),
                UnorderedElementsAre("ProjectTask deleted", "TimeEntry deleted", "Note deleted", "ProjectTask updated",
                                     "ProjectTask updated", "Project related", "Tag related"));
    EXPECT_THAT(deleted, ElementsAre(gone));
}

TEST_F(Delete, takesAlongUnsavedRecordsToo) {
    for (const bool stored : {true, false}) {
        auto& project = make<Project>(context);
        if (stored)
            context.save();
        auto& task = make<ProjectTask>(context, {.project = &project});
        auto& sub = make<ProjectTask>(context);
        sub.setParentTask(&task);
        make<TimeEntry>(context, {.task = &task});
        task.setTags({&make<Tag>(context)});
        context.remove(project);
        EXPECT_TRUE(task.isDeleted());
        context.save();
        EXPECT_EQ(sub.parentTask(), nullptr);
    }
    EXPECT_EQ(context.fetch<Project>().size() + context.fetch<TimeEntry>().size(), 0U);
    EXPECT_EQ(context.fetch<ProjectTask>().size() + context.fetch<Tag>().size(), 4U);
}

TEST_F(Save, isFollowedOnceByWhatWaitsForIt) {
    std::vector<std::size_t> stored; // at each call
    const auto wait = [&] {
        context.whenSaved([&] { stored.push_back(ModelContext(*container).fetch<Tag>().size()); });
    };
    wait();
    context.save();
    EXPECT_THAT(stored, ElementsAre()) << "there was nothing to save";
    auto& tag = make<Tag>(context, {.name = "one"});
    {
        const ModelContext writer(*container, ModelContext::Intent::update);
        EXPECT_THROW(context.save(std::chrono::milliseconds{1}), StoreBusyError);
        EXPECT_THAT(stored, ElementsAre());
    }
    context.save();
    EXPECT_THAT(stored, ElementsAre(1U));
    tag.setName("two");
    context.save();
    EXPECT_THAT(stored, ElementsAre(1U));
}

} // namespace
} // namespace quillorn
