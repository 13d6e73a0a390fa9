#include "AI/AIEnvironment.h"
#include "Models/Settings.h"
#include "Platform/HttpClient.h"
#include "Support/ViewTest.h"
#include "Views/ClientDetailView.h"
#include "Views/NoteDetailView.h"
#include "Views/ProjectDetailView.h"
#include "Views/TagDetailView.h"
#include "Views/TaskDetailView.h"

#include <fmt/core.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

struct DetailTest : ViewTest {
    DetailTest() {
        site.setClient(&acme);
        main.save();
        queue.runPosted();
    }
    void save() {
        main.save();
        queue.runPosted();
    }

    HttpClient http{queue};
    AIEnvironment ai{http, settings, main.context(), queue, clock, calendar, text};
    Client& acme = make<Client>(main.context(), {.name = "Acme"});
    Project& site = make<Project>(main.context(), {.name = "Site", .color = "#FF0000"});
    ProjectTask& task = make<ProjectTask>(main.context(), {.title = "Offer", .project = &site});
};

TEST_F(DetailTest, fieldsKeepWhatIsTypedWhenTheyAreLeft) {
    using enum TaskDetailView::Field;
    TaskDetailView view(environment, task.id(), [] { return APIConfig{}; });
    view.type(title, "  ");
    EXPECT_FALSE(view.leave(title));
    EXPECT_EQ(view.error(), "title cannot be empty");
    EXPECT_EQ(view.field(title).text(), "  ");
    view.type(title, "Offer, typed");
    elsewhere([](ModelContext& other) {
        auto& changed = named<ProjectTask>(other, "Offer");
        changed.setTitle("Offer, elsewhere");
        changed.setTaskDescription("Two pages");
    });
    EXPECT_EQ(view.field(title).text(), "Offer, typed");
    EXPECT_TRUE(view.field(title).isChangedElsewhere());
    EXPECT_EQ(view.field(description).text(), "Two pages");
    EXPECT_TRUE(view.leaveAll());
    EXPECT_EQ(task.title(), "Offer, typed");
    EXPECT_FALSE(view.field(title).isChangedElsewhere());
    ASSERT_TRUE(history.undo());
    queue.runPosted();
    EXPECT_EQ(view.field(title).text(), "Offer, elsewhere");
    view.type(sourceURL, "file:///etc/passwd");
    EXPECT_FALSE(view.leaveAll());
    view.revert(sourceURL);
    EXPECT_TRUE(view.leaveAll() && view.error().empty());
    view.type(description, "Not lost");
    elsewhere([](ModelContext& other) { other.remove(named<ProjectTask>(other, "Offer, elsewhere")); });
    EXPECT_TRUE(view.isGone());
    EXPECT_FALSE(view.leave(description));
    EXPECT_EQ(view.error() + ": " + view.field(description).text(), "This task was deleted: Not lost");
    view.setStatus(TaskStatus::review);
    EXPECT_EQ(view.error(), "Task was deleted meanwhile");
}

TEST_F(DetailTest, aTaskShowsAllThatBelongsToIt) {
    TaskDetailView view(environment, task.id(), [] { return APIConfig{}; });
    view.addSubtask("Draft");
    view.addSubtask("Send");
    view.addSubtask(" ");
    EXPECT_EQ(view.error(), "title cannot be empty");
    view.addComment(" \n");
    view.addComment(" Call first ");
    queue.runPosted();
    EXPECT_THAT(namesOf(std::vector{&record<ProjectTask>("Draft"), record<ProjectTask>("Draft").parentTask()}),
                ElementsAre("Draft", "Offer"));
    EXPECT_EQ(record<ProjectTask>("Draft").project(), &site);
    ASSERT_EQ(view.subtasks().size(), 2U);
    view.toggleSubtask(view.subtasks()[0].id);
    queue.runPosted();
    EXPECT_EQ(view.words().subtasks + " " + view.subtasks()[0].symbol, "1 of 2 checkmark.circle.fill");
    EXPECT_DOUBLE_EQ(view.words().progress, 0.5);
    ASSERT_EQ(view.comments().size(), 1U);
    EXPECT_EQ(view.comments()[0].text + ", " + view.comments()[0].when, "Call first, 12:00 PM");
    EXPECT_TRUE(view.setDueText("today 16:00"));
    EXPECT_EQ(view.words().due, "Today, 4:00 PM");
    view.toggleTimer();
    queue.advance(75s);
    EXPECT_EQ(view.words().clock + " " + view.words().time, "01:15 1m 15s");
    ASSERT_EQ(view.entries().size(), 1U);
    EXPECT_EQ(view.entries()[0].title, TaskDetailView::recording);
    view.toggleCompleted();
    queue.runPosted();
    EXPECT_FALSE(timer.isRunning());
    EXPECT_EQ(view.words().clock + view.words().statusLabel, "Done");
    EXPECT_FALSE(view.entries()[0].isRunning);
    std::string path;
    for (const PathStep& step : view.words().path)
        path += step.name + "/";
    EXPECT_EQ(path, "Acme/Site/");
    auto& tag = make<Tag>(main.context(), {.name = "x"});
    save();
    view.toggleTag(tag.id());
    ASSERT_EQ(view.tags().size(), 1U);
    elsewhere([](ModelContext& other) { named<Tag>(other, "x").setName("y"); });
    EXPECT_EQ(view.tags()[0].name, "y");
    view.setParent(record<ProjectTask>("Draft").id());
    EXPECT_EQ(view.error(), "A task can’t stand under itself");
    EXPECT_EQ(view.deletion()->message, "This permanently deletes “Offer” and its 1 time entry and 1 note. Its 2 "
                                        "subtasks will be kept as top-level tasks. This can’t be undone.");
    EXPECT_THAT(view.copyForAgent(), testing::HasSubstr("- **Title:** Offer"));
    view.removeComment(view.comments()[0].id);
    queue.runPosted();
    EXPECT_TRUE(view.comments().isEmpty());
}

TEST_F(DetailTest, notesStandWithTheirScope) {
    auto& bare = make<Project>(main.context(), {.name = "Bare"});
    make<Note>(main.context(), {.title = "", .content = "A comment", .project = &site, .task = &task});
    make<Note>(main.context(), {.title = "Loose", .content = "**Blue**"});
    make<Note>(main.context(), {.title = "Of bare", .project = &bare});
    save();
    NoteListView all(environment, {});
    NoteListView ofClient(environment, {NoteScope::Kind::client, acme.id()});
    NoteListView ofProject(environment, {NoteScope::Kind::project, site.id()});
    clock.advance(1min);
    const auto made = ofProject.add();
    ASSERT_TRUE(made);
    queue.runPosted();
    const auto titles = [](NoteListView& list) {
        std::string joined;
        for (const auto& row : list.rows().rows())
            joined += fmt::format("{}{} ", row.title, row.isPinned ? "!" : "");
        return joined;
    };
    EXPECT_EQ(titles(all), "Untitled Note Loose Of bare ");
    EXPECT_EQ(titles(ofClient) + titles(ofProject), "Untitled Note Untitled Note ");
    all.togglePin(record<Note>("Loose").id());
    bare.setArchived(true);
    save();
    EXPECT_EQ(titles(all), "Loose! Untitled Note ");
    all.setSearchText(" blue");
    EXPECT_EQ(titles(all), "Loose! ");
    all.setSearchText("green");
    EXPECT_EQ(all.emptyState()->text, "Nothing matches your search.");

    NoteDetailView note(environment, scene, *made);
    note.type(NoteDetailView::Field::content, "# Kick-off");
    note.setPreview(true);
    EXPECT_TRUE(note.isPreview());
    EXPECT_EQ(record<Note>("Untitled Note").content(), "# Kick-off");
    note.move(std::nullopt);
    queue.runPosted();
    EXPECT_THAT(note.path(), IsEmpty());
    EXPECT_TRUE(ofProject.rows().isEmpty());
    note.remove();
    queue.runPosted();
    note.type(NoteDetailView::Field::title, "Late");
    EXPECT_FALSE(note.leaveAll());
    EXPECT_EQ(note.error(), NoteDetailView::gone);
}

TEST_F(DetailTest, clientsAndProjectsAddUp) {
    auto& group = make<ProjectDivider>(main.context(), {.title = "", .clientID = acme.id()});
    site.setGroupID(group.id());
    make<Project>(main.context(), {.name = "Blog"}).setClient(&acme);
    make<TimeEntry>(main.context(), {.task = &task, .startTime = testNow - 65min}).setEndTime(testNow);
    save();
    ProjectDetailView project(environment, ai, scene, site.id());
    ClientDetailView client(environment, ai, scene, acme.id());
    TagDetailView tag(environment, scene, make<Tag>(main.context(), {.name = "x"}).id());
    EXPECT_EQ(project.subtitle() + " | " + client.subtitle(), "Acme · 1 open · 1h 5m | 2 projects · 1 open task");
    const auto rows = [&] {
        std::string all;
        for (const auto& row : client.projects().rows())
            all += fmt::format("{}{} {}, ", row.isInGroup ? "> " : "", row.name, row.detail);
        return all;
    };
    EXPECT_EQ(rows(), "Blog 0 open · 0h 0m, Group 1, > Site 1 open · 1h 5m, ");
    client.toggleGroup(group.id());
    EXPECT_EQ(rows(), "Blog 0 open · 0h 0m, Group 1, ");

    project.moveCard(task.id(), TaskStatus::review);
    project.addCard("Later", TaskStatus::todo);
    queue.runPosted();
    const auto board = [&] {
        std::string all;
        for (auto& column : project.board()) {
            all += fmt::format("{} {}:", column.label, column.count);
            for (const auto& card : column.cards.rows())
                all += fmt::format(" {} {}", card.title, card.time);
            all += "; ";
        }
        return all;
    };
    EXPECT_EQ(board(), "To Do 1: Later ; In Progress 0:; Review 1: Offer 1h 5m; Done 0:; ");
    project.moveCard(task.id(), TaskStatus::done);
    elsewhere([](ModelContext& other) { other.fetch<TimeEntry>().front()->setEndTime(testNow + 55min); });
    EXPECT_EQ(board(), "To Do 1: Later ; In Progress 0:; Review 0:; Done 1: Offer 2h 0m; ");
    EXPECT_DOUBLE_EQ(project.progress(), 0.5);
    ASSERT_TRUE(history.undo());
    queue.runPosted();
    EXPECT_EQ(project.figures()[0].value + project.figures()[3].value, "22h 0m");

    client.type(ClientDetailView::Field::name, "");
    EXPECT_FALSE(client.leaveAll());
    EXPECT_EQ(client.error(), "name cannot be empty");
    client.revert(ClientDetailView::Field::name);
    client.setColor("blue");
    EXPECT_EQ(client.error(), "color must be a hex string starting with #");
    client.selectTab("nothing");
    client.selectTab("time");
    EXPECT_EQ(std::string(client.tab()) + " " + std::string(project.tab()), "time overview");
    EXPECT_EQ(client.tasks().taskCount() + tag.tasks().taskCount(), 2U); // Later, Offer
    EXPECT_EQ(client.time().figures()[0].value, "2h 0m");
    EXPECT_FALSE(project.chat().isConfigured());
    project.setArchived(true);
    queue.runPosted();
    EXPECT_EQ(project.archiveButton(), "Unarchive");
    EXPECT_EQ(rows(), "Blog 0 open · 0h 0m, Group 0, ");
    project.remove();
    queue.runPosted();
    EXPECT_TRUE(project.isGone());
    EXPECT_TRUE(project.notes().rows().isEmpty());
}

} // namespace
} // namespace quillorn
