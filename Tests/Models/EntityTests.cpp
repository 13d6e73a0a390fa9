#include "Models/HexColor.h"
#include "Support/FakeClock.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

struct Entities : testing::Test {
    MemoryStore store;
    ModelContext context{*store.container};
};

std::string times(int count, std::string_view text) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST_F(Entities, areConstructedWithTheDefaults) {
    const auto& client = make<Client>(context);
    EXPECT_EQ(client.name() + "|" + client.color() + "|" + client.icon(), "|#007AFF|building.2.fill");
    EXPECT_FALSE(client.clientDescription() || client.isArchived());
    const auto& project = make<Project>(context);
    EXPECT_EQ(project.name() + "|" + project.color(), "|#007AFF");
    EXPECT_FALSE(project.projectDescription() || project.isArchived() || project.groupID() || project.client());
    EXPECT_EQ(project.sortOrder(), 0);
    const auto& task = make<ProjectTask>(context);
    EXPECT_EQ(task.title(), "");
    EXPECT_EQ(task.priority(), TaskPriority::medium);
    EXPECT_EQ(task.status(), TaskStatus::todo);
    EXPECT_EQ(task.sortOrder(), 0);
    EXPECT_FALSE(task.taskDescription() || task.dueDate() || task.dueHasTime() || task.completedAt() ||
                 task.sourceTitle() || task.sourceURL() || task.project() || task.parentTask());
    const auto& entry = make<TimeEntry>(context, {.startTime = testNow});
    EXPECT_EQ(entry.startTime(), testNow);
    EXPECT_FALSE(entry.endTime() || entry.notes() || entry.title() || entry.task() || entry.project());
    const auto& note = make<Note>(context);
    EXPECT_EQ(note.title() + "|" + note.content(), "Untitled Note|");
    EXPECT_FALSE(note.isPinned() || note.project() || note.task());
    const auto& tag = make<Tag>(context);
    EXPECT_EQ(tag.name() + "|" + tag.color(), "|#007AFF");
    const auto& message = make<ChatMessage>(context);
    EXPECT_EQ(message.role(), ChatRole::user);
    EXPECT_EQ(message.content(), "");
    const auto& divider = make<ProjectDivider>(context);
    EXPECT_EQ(divider.title(), "");
    EXPECT_EQ(divider.sortOrder(), 0);
    EXPECT_FALSE(divider.clientID());

    for (const Date made : {client.createdAt(), client.updatedAt(), project.createdAt(), project.updatedAt(),
                            task.createdAt(), task.updatedAt(), note.createdAt(), note.updatedAt(), tag.createdAt(),
                            tag.updatedAt(), message.createdAt(), divider.createdAt()})
        EXPECT_EQ(made, testNow);
    std::set<UUID> ids{client.id(), project.id(), task.id(), entry.id(), note.id(), tag.id(), message.id()};
    EXPECT_EQ(ids.size(), 7U);
    EXPECT_FALSE(ids.contains(UUID()));
}

TEST_F(Entities, aTaskConstructedAsDoneIsNotCompleted) {
    const auto& task = make<ProjectTask>(context, {.status = TaskStatus::done});
    EXPECT_EQ(task.status(), TaskStatus::done);
    EXPECT_FALSE(task.isCompleted());
}

TEST_F(Entities, absentListsCountAsNothing) {
    const auto& client = make<Client>(context);
    EXPECT_TRUE(client.projects().isAbsent());
    EXPECT_EQ(client.projectCount() + client.activeProjectCount() + client.totalTaskCount() + client.activeTaskCount(),
              0U);
    EXPECT_EQ(client.totalTimeSpent(testNow), 0);
    const auto& project = make<Project>(context);
    EXPECT_EQ(project.taskCount() + project.completedTaskCount() + project.allTimeEntries().size(), 0U);
    const auto& task = make<ProjectTask>(context);
    EXPECT_FALSE(task.hasSubtasks());
    EXPECT_EQ(task.subtaskCount() + task.completedSubtaskCount() + task.depth(), 0U);
    EXPECT_EQ(task.totalTimeSpent(testNow), 0);
}

TEST_F(Entities, countTasksAndTimeUpTheHierarchy) {
    auto& client = make<Client>(context);
    auto &open = make<Project>(context), &archived = make<Project>(context);
    open.setClient(&client);
    archived.setClient(&client);
    archived.setArchived(true);
    auto& task = make<ProjectTask>(context, {.project = &open});
    auto& completed = make<ProjectTask>(context, {.project = &open});
    completed.setCompleted(true, testNow);
    auto& hidden = make<ProjectTask>(context, {.status = TaskStatus::done, .project = &archived});
    const auto entry = [&](ProjectTask* on, Project* project, Date start, std::optional<Date> end) -> TimeEntry& {
        auto& made = make<TimeEntry>(context, {.task = on, .project = project, .startTime = start});
        made.setEndTime(end);
        return made;
    };
    auto& both = entry(&task, &open, testNow, testNow + 1500ms); // linked both ways, counted once
    auto& running = entry(&task, nullptr, testNow, std::nullopt);
    auto& direct = entry(nullptr, &open, testNow + 10s, testNow); // negative: counted as it is
    entry(&hidden, nullptr, testNow, testNow + 100s);
    context.save();

    FakeClock clock;
    clock.advance(60s);
    EXPECT_EQ(client.projectCount(), 2U);
    EXPECT_THAT(client.activeProjects(), ElementsAre(&open));
    EXPECT_EQ(client.activeProjectCount(), 1U);
    EXPECT_EQ(client.totalTaskCount(), 3U);
    EXPECT_EQ(client.activeTaskCount(), 2U);
    EXPECT_EQ(open.taskCount(), 2U);
    EXPECT_THAT(open.activeTasks(), ElementsAre(&task));
    EXPECT_EQ(open.completedTaskCount(), 1U);
    EXPECT_THAT(open.allTimeEntries(), ElementsAre(&both, &running, &direct));
    EXPECT_DOUBLE_EQ(task.totalTimeSpent(clock.now()), 61.5);
    EXPECT_DOUBLE_EQ(open.totalTimeSpent(clock.now()), 51.5);
    EXPECT_DOUBLE_EQ(client.totalTimeSpent(clock.now()), 151.5);
    clock.advance(1s);
    EXPECT_DOUBLE_EQ(client.totalTimeSpent(clock.now()), 152.5) << "a running entry counts on";
    EXPECT_TRUE(running.isRunning());
    EXPECT_EQ(running.formattedDuration(clock.now()), "01:01");
}

TEST_F(Entities, knowTheirPlaceUnderParents) {
    ProjectTask* last = nullptr;
    std::vector<ProjectTask*> chain;
    for (int i = 0; i < 40; ++i) {
        auto& task = make<ProjectTask>(context);
        task.setParentTask(last);
        chain.push_back(last = &task);
    }
    chain[2]->setCompleted(true, testNow);
    make<ProjectTask>(context).setParentTask(chain[1]);
    context.save();
    ModelContext reader(*store.container);
    EXPECT_EQ(reader.find<ProjectTask>(last->id())->depth(), 39U);
    EXPECT_EQ(chain[0]->depth(), 0U);
    const auto* parent = reader.find<ProjectTask>(chain[1]->id());
    EXPECT_TRUE(parent->hasSubtasks());
    EXPECT_EQ(parent->subtaskCount(), 2U);
    EXPECT_EQ(parent->completedSubtaskCount(), 1U);
    chain[0]->setParentTask(chain[2]);
    EXPECT_EQ(chain[0]->depth(), 2U) << "a circle ends";
}

TEST_F(Entities, areOverdueByTheInstant) {
    auto& task = make<ProjectTask>(context);
    EXPECT_FALSE(task.isOverdue(testNow));
    task.setDueDate(testNow);
    EXPECT_FALSE(task.isOverdue(testNow));
    EXPECT_TRUE(task.isOverdue(testNow + 1us));
    task.setStatus(TaskStatus::review, testNow);
    EXPECT_TRUE(task.isOverdue(testNow + 1us));
    task.setCompleted(true, testNow);
    EXPECT_FALSE(task.isOverdue(testNow + 1us));
}

TEST_F(Entities, nameTimeEntriesByWhatTheyHave) {
    auto& project = make<Project>(context, {.name = "Site"});
    auto& task = make<ProjectTask>(context, {.title = "Draw"});
    EXPECT_EQ(make<TimeEntry>(context, {.task = &task, .project = &project, .title = " "}).displayName(), " ");
    EXPECT_EQ(make<TimeEntry>(context, {.task = &task, .project = &project, .title = ""}).displayName(), "Draw");
    EXPECT_EQ(make<TimeEntry>(context, {.project = &project}).displayName(), "Site (General)");
    EXPECT_EQ(make<TimeEntry>(context).displayName(), "Unassigned");
    task.setTitle("");
    EXPECT_EQ(make<TimeEntry>(context, {.task = &task, .project = &project}).displayName(), "");
}

TEST_F(Entities, deriveTheTextsOfNotes) {
    auto& task = make<ProjectTask>(context, {.title = "Draw"});
    const std::string family = "👨‍👩‍👧", emoji = times(250, family);
    struct Case {
        std::string title, content;
        bool comment;
        std::string preview, displayTitle, listPreview, summary;
    };
    const std::vector<Case> cases{
        {"Untitled Note", "", false, "", "Untitled Note", "", "Edited a note"},
        {"", " \n ", false, "", "Untitled Note", "", "Edited a note"},
        {"", "\t \n", true, "", "Comment on Draw", "", "Commented on Draw"},
        {"", " Said \n\n this  and \n that ", true, "Said  this and  that", "Said", "this  and   that",
         "Commented on Draw"},
        {" Plan ", "a\nb", false, "a b", "Plan", "a b", "Edited note: Plan"},
        {" Plan ", "a\nb", true, "a b", "Plan", "a b", "Commented on Draw"},
        {"  Untitled Note ", "\n\n first \n\nsecond\nthird", false, "first  second third", "first", "second third",
         "Edited note: first  second third"},
        {"", "   \nsecond", false, "second", "Untitled Note", "second", "Edited note: second"},
        {"", "a    b   c  d", false, "a  b  c d", "a    b   c  d", "", "Edited note: a  b  c d"},
        {"", "one\r\ntwo", false, "one\r two", "one", "two", "Edited note: one\r two"},
        {"t", times(250, "x"), false, times(250, "x"), "t", times(250, "x"), "Edited note: t"},
        {"t", times(251, "x"), false, times(250, "x") + "...", "t", times(250, "x") + "...", "Edited note: t"},
        {"t", emoji, false, emoji, "t", emoji, "Edited note: t"},
        {"t", emoji + "!", false, emoji + "...", "t", emoji + "...", "Edited note: t"},
        {"", times(121, family) + "\n" + emoji, false, times(121, family) + " " + times(128, family) + "...",
         times(120, family), emoji, "Edited note: " + times(60, family)},
        {"", "h\n" + times(251, "é"), false, "h " + times(248, "é") + "...", "h", times(250, "é") + "...",
         "Edited note: h " + times(58, "é")},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.title + "|" + each.content.substr(0, 40));
        auto& note = make<Note>(context, {.title = each.title, .content = each.content});
        note.setTask(each.comment ? &task : nullptr);
        EXPECT_EQ(note.preview(), each.preview);
        EXPECT_EQ(note.displayTitle(), each.displayTitle);
        EXPECT_EQ(note.listPreview(), each.listPreview);
        EXPECT_EQ(note.activitySummary(), each.summary);
    }
}

TEST_F(Entities, togglePinsOfNotes) {
    auto& note = make<Note>(context);
    note.togglePin(testNow + 1s);
    EXPECT_TRUE(note.isPinned());
    EXPECT_EQ(note.updatedAt(), testNow + 1s);
    note.togglePin(testNow + 2s);
    EXPECT_FALSE(note.isPinned());
}

TEST(Enums, carryTheirTexts) {
    const std::array statuses{"To Do|circle", "In Progress|circle.lefthalf.filled", "Review|eye.circle",
                              "Done|checkmark.circle.fill"};
    const std::array priorities{"🔵 Low", "🟠 Medium", "❗ High", "🔥 Urgent"};
    const std::array behaviors{"Ask every time|Prompt when completing a parent with incomplete subtasks",
                               "Complete all subtasks|Automatically complete all subtasks when parent is completed",
                               "Leave subtasks as-is|Complete only the parent, subtasks remain unchanged",
                               "Block until subtasks complete|Prevent completing parent until all subtasks are done"};
    const auto joined = [](std::string_view a, std::string_view b) { return std::string(a) + "|" + std::string(b); };
    for (std::size_t raw = 0; raw < 4; ++raw) {
        const auto number = static_cast<std::int64_t>(raw);
        const auto status = enumFromRaw<TaskStatus>(number).value();
        EXPECT_EQ(joined(label(status), symbol(status)), statuses[raw]);
        EXPECT_EQ(menuLabel(enumFromRaw<TaskPriority>(number).value()), priorities[raw]);
        const auto behavior = enumFromRaw<SubtaskCompletionBehavior>(number).value();
        EXPECT_EQ(joined(label(behavior), explanation(behavior)), behaviors[raw]);
    }
    for (const std::int64_t raw : {std::int64_t{-1}, std::int64_t{4}, INT64_MAX, INT64_MIN, std::int64_t{1} << 32}) {
        EXPECT_EQ(enumFromRaw<TaskStatus>(raw), std::nullopt);
        EXPECT_EQ(enumFromRaw<TaskPriority>(raw), std::nullopt);
        EXPECT_EQ(enumFromRaw<SubtaskCompletionBehavior>(raw), std::nullopt);
    }
    EXPECT_EQ(enumFromRaw<ChatRole>(2), ChatRole::assistant);
    EXPECT_EQ(enumFromRaw<ChatRole>(3), std::nullopt);
}

TEST(HexColor, readsDigitsOfThreeSixAndEightCharacters) {
    const HexColor white{1, 1, 1, 1}, black{};
    const auto of = [](int red, int green, int blue, int alpha = 255) {
        return HexColor{red / 255.0, green / 255.0, blue / 255.0, alpha / 255.0};
    };
    const std::vector<std::pair<std::string_view, HexColor>> cases{
        {"#FFF", white},
        {"FFF", white},
        {"#FFFFFF", white},
        {" ##ffffff;", white},
        {"#007AFF", of(0, 0x7A, 255)},
        {"#1aF", of(0x11, 0xAA, 0xFF)},
        {"80112233", of(0x11, 0x22, 0x33, 0x80)},
        {"#00FFFFFF", HexColor{1, 1, 1, 0}},
        {"#12345", black},
        {"", black},
        {"#", black},
        {"#FF", black},
        {"#1234567", black},
        {"#123456789", black},
        {"zzz", black},
        {"12zz56", of(0, 0, 0x12)}, // scanned as far as it goes
        {"1zz", of(0, 0, 0x11)},
        {"FFFFFz", of(0x0F, 0xFF, 0xFF)},
        {"zzzzzzzz", HexColor{0, 0, 0, 0}},
        {"#12 456", of(0, 0, 0x12)},
        {"#ABCDÉF", of(0, 0xAB, 0xCD)}, // six characters, though more bytes
    };
    for (const auto& [text, color] : cases)
        EXPECT_EQ(HexColor::parse(text), color) << text;
}

} // namespace
} // namespace quillorn
