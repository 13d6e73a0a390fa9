#include "Store/ChangeSet.h"
#include "Store/StoreError.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/resource.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(Save, writesOnlyTheChangedColumns) {
    TestStore store;
    ModelContext maker(*store.container);
    auto& made = make<ProjectTask>(maker, {.title = "old", .taskDescription = "old"});
    maker.save();

    ModelContext first(*store.container), second(*store.container);
    auto &one = *first.find<ProjectTask>(made.id()), &other = *second.find<ProjectTask>(made.id());
    one.setTitle("new");
    other.setTaskDescription("new");
    other.setParentTask(&make<ProjectTask>(second, {.title = "parent"}));
    first.save();
    second.save();
    ModelContext reader(*store.container);
    const auto& task = *reader.find<ProjectTask>(made.id());
    EXPECT_EQ(task.title(), "new");
    EXPECT_EQ(task.taskDescription(), "new");
    EXPECT_EQ(task.parentTask()->title(), "parent");
}

TEST(Save, equalAssignmentWritesNothing) {
    MemoryStore store;
    ModelContext context(*store.container);
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
    int posts = 0;
    const auto token = store.notifications.observe(storeDidSave, [&](const Notification&) { ++posts; });
    const auto before = store.container->executedStatements();
    context.save();
    EXPECT_EQ(store.container->executedStatements(), before);
    EXPECT_EQ(posts, 0);
}

TEST(Save, doesNotBringBackARowThatSomebodyElseDeleted) {
    TestStore store;
    ModelContext maker(*store.container);
    auto& task = make<ProjectTask>(maker, {.title = "t"});
    auto& tag = make<Tag>(maker, {.name = "tag"});
    maker.save();
    ModelContext other(*store.container);
    other.remove(*other.find<ProjectTask>(task.id()));
    other.save();
    task.setTitle("changed");
    task.setTags({&tag});
    tag.setName("renamed");
    maker.save();
    EXPECT_TRUE(task.isDeleted());
    EXPECT_THAT(tag.tasks(), IsEmpty());
    ModelContext reader(*store.container);
    EXPECT_THAT(reader.fetch<ProjectTask>(), IsEmpty());
    EXPECT_THAT(namesOf(reader.fetch<Tag>()), ElementsAre("renamed"));
    EXPECT_EQ(ForeignConnection(store.file()).integer("SELECT count(*) FROM ProjectTask_Tag"), 0);
}

/// Keeps the files of this process from growing: a disk without space, as far as SQLite can tell.
class FullDisk {
  public:
    FullDisk() {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit none{.rlim_cur = 4096, .rlim_max = m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }

  private:
    rlimit m_before{};
};

TEST(Save, failingLeavesTheStoreAndTheObjectsAsTheyWere) {
    struct Fault {
        const char* name;
        std::function<std::shared_ptr<void>(const TestStore&)> begin; // ends with the result
    };
    const auto trigger = [](const char* event) {
        return [event](const TestStore& store) {
            const auto file = store.file();
            ForeignConnection(file).execute(std::string("CREATE TRIGGER refuse ") + event +
                                            " BEGIN SELECT RAISE(ABORT, 'refused'); END");
            return std::shared_ptr<void>(nullptr,
                                         [file](void*) { ForeignConnection(file).execute("DROP TRIGGER refuse"); });
        };
    };
    const std::vector<Fault> faults{{"insert", trigger("BEFORE INSERT ON Note")},
                                    {"update", trigger("BEFORE UPDATE ON ProjectTask")},
                                    {"delete", trigger("AFTER DELETE ON Tag")},
                                    {"link", trigger("BEFORE INSERT ON ProjectTask_Tag")},
                                    {"disk", [](const TestStore&) { return std::make_shared<FullDisk>(); }},
                                    {"table", [](const TestStore& store) {
                                         const auto file = store.file();
                                         ForeignConnection(file).execute("ALTER TABLE Note RENAME TO Gone");
                                         return std::shared_ptr<void>(nullptr, [file](void*) {
                                             ForeignConnection(file).execute("ALTER TABLE Gone RENAME TO Note");
                                         });
                                     }}};
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.name);
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
        auto ended = fault.begin(store);
        EXPECT_THROW(context.save(), StoreError);
        EXPECT_THROW(context.save(), StoreError) << "and once more";
        EXPECT_EQ(posts, 0);
        EXPECT_TRUE(context.hasChanges());
        EXPECT_EQ(comment.key(), 0);
        EXPECT_EQ(task.title().size(), 100'000U);
        EXPECT_THAT(task.notes(), ElementsAre(&comment));
        ended.reset();
        {
            ModelContext reader(*store.container);
            EXPECT_THAT(namesOf(reader.fetch<ProjectTask>()), ElementsAre("t"));
            EXPECT_THAT(namesOf(reader.fetch<Tag>()), ElementsAre("goes", "linked"));
            EXPECT_THAT(reader.fetch<Note>(), IsEmpty());
            EXPECT_THAT(named<Tag>(reader, "linked").tasks(), IsEmpty());
            make<Note>(reader, {.title = "between"}); // takes the key that the failed save had in view
            reader.save();
        }
        context.save();
        EXPECT_FALSE(context.hasChanges());
        EXPECT_EQ(posts, 2);
        ModelContext reader(*store.container);
        EXPECT_THAT(namesOf(reader.fetch<Tag>()), ElementsAre("linked"));
        EXPECT_THAT(namesOf(reader.fetch<Note>()), ElementsAre("between", "comment"));
        EXPECT_EQ(reader.find<ProjectTask>(task.id())->title().size(), 100'000U);
        EXPECT_THAT(namesOf(reader.find<ProjectTask>(task.id())->notes()), ElementsAre("comment"));
        EXPECT_THAT(namesOf(reader.find<ProjectTask>(task.id())->tags()), ElementsAre("linked"));
    }
}

TEST(Save, failingOfAnUpdateGivesUpTheLock) {
    TestStore store;
    ModelContext context(*store.container, ModelContext::Intent::update);
    make<Tag>(context, {.name = "a"});
    {
        const FullDisk full;
        make<Note>(context, {.content = std::string(100'000, 'x')});
        EXPECT_THROW(context.save(), StoreError);
    }
    ModelContext other(*store.container);
    make<Tag>(other, {.name = "b"});
    other.save();
    context.save();
    EXPECT_THAT(namesOf(other.fetch<Tag>()), ElementsAre("b", "a"));
}

TEST(Save, refersOnlyToRowsThatAreThere) {
    TestStore store;
    ModelContext context(*store.container);
    auto& project = make<Project>(context, {.name = "p"});
    context.save();
    {
        ModelContext other(*store.container);
        other.remove(named<Project>(other, "p"));
        other.save();
    }
    make<ProjectTask>(context, {.title = "t", .project = &project});
    EXPECT_THROW(context.save(), StoreError);
    ModelContext reader(*store.container);
    EXPECT_THAT(reader.fetch<ProjectTask>(), IsEmpty());
}

/// A client with everything under it, a second project with a subtask of the first one's task, and what is loose.
void populate(ModelContext& context) {
    auto& client = make<Client>(context, {.name = "client"});
    auto& project = make<Project>(context, {.name = "project"});
    auto& elsewhere = make<Project>(context, {.name = "elsewhere"});
    project.setClient(&client);
    project.setGroupID(make<ProjectDivider>(context, {.title = "divider", .clientID = client.id()}).id());
    auto& task = make<ProjectTask>(context, {.title = "task", .project = &project});
    const auto subtask = [&](const char* title, ProjectTask& parent, Project& home) -> ProjectTask& {
        auto& made = make<ProjectTask>(context, {.title = title, .project = &home});
        made.setParentTask(&parent);
        return made;
    };
    auto& sub = subtask("sub", task, project);
    subtask("subsub", sub, project);
    subtask("foreign sub", task, elsewhere);
    task.setTags({&make<Tag>(context, {.name = "tag"})});
    sub.setTags({*task.tags().begin()});
    make<TimeEntry>(context, {.task = &task, .title = "entry"});
    make<TimeEntry>(context, {.task = &sub, .title = "sub entry"});
    make<TimeEntry>(context, {.project = &project, .title = "direct"});
    make<TimeEntry>(context, {.title = "loose"});
    make<Note>(context, {.title = "note", .project = &project});
    make<Note>(context, {.title = "comment", .project = &project, .task = &task});
    make<ChatMessage>(context, {.content = "project chat", .project = &project});
    make<ChatMessage>(context, {.content = "client chat", .client = &client});
    context.save();
}

/// Every record by name, with what it refers to: "sub < project, task".
std::vector<std::string> everything(ModelContext& context) {
    std::vector<std::string> lines;
    const auto add = [&](const auto& record, std::initializer_list<std::string> references) {
        lines.push_back(nameOf(record));
        const char* separator = " < ";
        for (const std::string& reference : references) {
            if (reference.empty())
                continue;
            lines.back() += separator + reference;
            separator = ", ";
        }
    };
    const auto ref = [](const auto* record) { return record == nullptr ? std::string() : nameOf(*record); };
    for (const auto* record : context.fetch<Client>())
        add(*record, {});
    for (const auto* record : context.fetch<Project>())
        add(*record, {ref(record->client()), record->groupID() ? "group" : ""});
    for (const auto* record : context.fetch<ProjectDivider>())
        add(*record, {record->clientID() ? "scope" : ""});
    for (const auto* record : context.fetch<ProjectTask>())
        add(*record, {ref(record->project()), ref(record->parentTask()),
                      record->tags().empty() ? "" : nameOf(**record->tags().begin())});
    for (const auto* record : context.fetch<Tag>())
        add(*record, {});
    for (const auto* record : context.fetch<TimeEntry>())
        add(*record, {ref(record->task()), ref(record->project())});
    for (const auto* record : context.fetch<Note>())
        add(*record, {ref(record->task()), ref(record->project())});
    for (const auto* record : context.fetch<ChatMessage>())
        add(*record, {ref(record->project()), ref(record->client())});
    return lines;
}

template <class Type>
std::function<void(ModelContext&)> removing(const char* name) {
    return [name](ModelContext& context) { context.remove(named<Type>(context, name)); };
}

std::vector<std::string> without(const std::vector<std::string>& lines, const std::vector<std::string>& others) {
    std::vector<std::string> rest;
    for (const std::string& line : lines)
        if (std::find(others.begin(), others.end(), line) == others.end())
            rest.push_back(line);
    return rest;
}

TEST(Delete, takesAlongWhatBelongsAndClearsWhatRefers) {
    struct Case {
        const char* name;
        std::function<void(ModelContext&)> remove;
        std::vector<std::string> gone;    // lines of everything() that are no more
        std::vector<std::string> instead; // and those that came in their place
    };
    const std::vector<Case> cases{
        {"entry", removing<TimeEntry>("entry"), {"entry < task"}, {}},
        {"note", removing<Note>("comment"), {"comment < task, project"}, {}},
        {"chat", removing<ChatMessage>("client chat"), {"client chat < client"}, {}},
        {"divider", removing<ProjectDivider>("divider"), {"divider < scope"}, {}},
        {"tag",
         removing<Tag>("tag"),
         {"tag", "task < project, tag", "sub < project, task, tag"},
         {"task < project", "sub < project, task"}},
        {"subtask",
         removing<ProjectTask>("sub"),
         {"sub < project, task, tag", "sub entry < sub", "subsub < project, sub"},
         {"subsub < project"}},
        {"task",
         removing<ProjectTask>("task"),
         {"task < project, tag", "entry < task", "comment < task, project", "sub < project, task, tag",
          "foreign sub < elsewhere, task"},
         {"sub < project, tag", "foreign sub < elsewhere"}},
        {"project",
         removing<Project>("project"),
         {"project < client, group", "task < project, tag", "sub < project, task, tag", "subsub < project, sub",
          "entry < task", "sub entry < sub", "direct < project", "note < project", "comment < task, project",
          "project chat < project", "foreign sub < elsewhere, task"},
         {"foreign sub < elsewhere"}},
        {"client",
         removing<Client>("client"),
         {"client", "project < client, group", "task < project, tag", "sub < project, task, tag",
          "subsub < project, sub", "entry < task", "sub entry < sub", "direct < project", "note < project",
          "comment < task, project", "project chat < project", "client chat < client", "foreign sub < elsewhere, task"},
         {"foreign sub < elsewhere"}},
        {"several",
         [](ModelContext& context) {
             for (const char* name : {"subsub", "task", "sub"})
                 removing<ProjectTask>(name)(context);
         },
         {"task < project, tag", "sub < project, task, tag", "subsub < project, sub", "entry < task", "sub entry < sub",
          "comment < task, project", "foreign sub < elsewhere, task"},
         {"foreign sub < elsewhere"}},
    };
    for (const Case& each : cases) {
        for (const char* loaded : {"nothing", "rows", "relations"}) {
            SCOPED_TRACE(std::string(each.name) + " with loaded " + loaded);
            MemoryStore store;
            {
                ModelContext maker(*store.container);
                populate(maker);
            }
            ModelContext before(*store.container), context(*store.container);
            const auto lines = everything(before);
            std::vector<ProjectTask*> tasks;
            if (loaded != std::string_view("nothing"))
                tasks = context.fetch<ProjectTask>();
            if (loaded == std::string_view("relations")) {
                EXPECT_EQ(everything(context), lines);
            }
            each.remove(context);
            context.save();

            ModelContext reader(*store.container);
            const auto now = everything(reader);
            EXPECT_THAT(without(lines, now), testing::UnorderedElementsAreArray(each.gone));
            EXPECT_THAT(without(now, lines), testing::UnorderedElementsAreArray(each.instead));
            EXPECT_EQ(everything(context), now) << "the objects at hand agree with the store";
            for (const ProjectTask* task : tasks) {
                EXPECT_EQ(task->isDeleted(), reader.find<ProjectTask>(task->id()) == nullptr) << task->title();
                for (const ProjectTask* subtask : task->subtasks())
                    EXPECT_FALSE(subtask->isDeleted()) << task->title();
            }
        }
    }
}

TEST(Delete, reachesWhatOthersAddedMeanwhile) {
    TestStore store;
    ModelContext context(*store.container);
    populate(context);
    everything(context);
    {
        const auto second = store.open();
        ModelContext other(*second);
        auto& added = make<ProjectTask>(other, {.title = "added", .project = &named<Project>(other, "project")});
        make<TimeEntry>(other, {.task = &added, .title = "added entry"});
        make<Note>(other, {.title = "added comment", .task = &named<ProjectTask>(other, "task")});
        other.save();
    }
    context.remove(named<Client>(context, "client"));
    context.save();
    ModelContext reader(*store.container);
    EXPECT_THAT(everything(reader),
                ElementsAre("elsewhere", "divider < scope", "foreign sub < elsewhere", "tag", "loose"));
}

TEST(Delete, ofAnUnsavedRecordLeavesNoTrace) {
    MemoryStore store;
    ModelContext context(*store.container);
    auto& project = make<Project>(context, {.name = "p"});
    auto& tag = make<Tag>(context, {.name = "tag"});
    context.save();
    auto& task = make<ProjectTask>(context, {.title = "t", .project = &project});
    task.setTags({&tag});
    context.remove(task);
    context.remove(task);
    EXPECT_TRUE(task.isDeleted());
    EXPECT_THAT(project.tasks(), IsEmpty());
    EXPECT_THAT(tag.tasks(), IsEmpty());
    EXPECT_FALSE(context.hasChanges());
}

TEST(Delete, takesAlongUnsavedRecordsToo) {
    for (const bool stored : {true, false}) {
        MemoryStore store;
        ModelContext context(*store.container);
        auto& project = make<Project>(context, {.name = "p"});
        if (stored)
            context.save();
        auto& task = make<ProjectTask>(context, {.title = "t", .project = &project});
        make<ProjectTask>(context, {.title = "sub"}).setParentTask(&task);
        make<TimeEntry>(context, {.task = &task, .title = "e"});
        task.setTags({&make<Tag>(context, {.name = "tag"})});
        context.remove(project);
        EXPECT_TRUE(task.isDeleted());
        context.save();
        EXPECT_THAT(everything(context), ElementsAre("sub", "tag"));
    }
}

TEST(ChangeSet, tellsEveryRowOnceWithTheCascades) {
    MemoryStore store;
    ModelContext context(*store.container);
    populate(context);
    std::vector<std::string> rows;
    const auto token = store.notifications.observe(storeDidSave, [&](const Notification& notification) {
        for (const auto& row :
             std::any_cast<std::shared_ptr<const ChangeSet>>(notification.userInfo.at("changes"))->rows) {
            const char* const kinds[] = {" inserted", " updated", " deleted"};
            EXPECT_GT(row.key, 0);
            rows.push_back(std::string(row.type->name) + kinds[static_cast<int>(row.change)]);
        }
    });
    auto& added = make<ProjectTask>(context, {.title = "new"});
    added.setTags({&named<Tag>(context, "tag")});
    named<Project>(context, "elsewhere").setName("renamed");
    context.save();
    EXPECT_THAT(rows, UnorderedElementsAre("ProjectTask inserted", "Project updated"));
    rows.clear();
    added.setTags({});
    context.save();
    EXPECT_THAT(rows, ElementsAre("ProjectTask updated")) << "links alone";
    rows.clear();
    named<ProjectTask>(context, "task").setTitle("task"); // no change
    named<ProjectTask>(context, "sub").setTitle("changed");
    context.remove(named<ProjectTask>(context, "task"));
    context.save();
    EXPECT_THAT(rows, UnorderedElementsAre("ProjectTask deleted", "TimeEntry deleted", "Note deleted",
                                           "ProjectTask updated", "ProjectTask updated"));
}

} // namespace
} // namespace quillorn
