#include "Models/Settings.h"
#include "Support/ViewTest.h"
#include "Views/RecordForms.h"
#include "Views/TaskForm.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

struct FormTest : ViewTest {
    std::vector<std::string> names(const std::vector<FormChoice>& choices) {
        std::vector<std::string> all;
        for (const FormChoice& each : choices)
            all.push_back(each.name);
        return all;
    }
};

TEST_F(FormTest, refuseWhatRequestsRefuse) {
    ClientForm client(environment);
    ProjectForm project(environment, std::nullopt);
    TagForm tag(environment);
    TaskForm task(environment, TaskForm::Suggestion{});
    tag.set(&TagValues::color, "#12345G");
    client.set(&ClientValues::color, "red");
    task.set(&TaskValues::title, " ");
    task.set(&TaskValues::sourceURL, "javascript:alert(1)");
    EXPECT_THAT(client.faults(), ElementsAre("name cannot be empty", "color must be a hex string starting with #"));
    EXPECT_THAT(project.faults(), ElementsAre("name cannot be empty"));
    EXPECT_THAT(tag.faults(), ElementsAre("name cannot be empty", "color must be a valid hex color (e.g. #FF3B30)"));
    EXPECT_THAT(task.faults(), ElementsAre("sourceURL scheme 'javascript' is not allowed", "title cannot be empty"));
    for (RecordFormBase* form : std::initializer_list<RecordFormBase*>{&client, &project, &tag, &task})
        EXPECT_FALSE(form->save());
    EXPECT_FALSE(history.canUndo());
}

TEST_F(FormTest, makeProjectsLastOfTheirClient) {
    auto& acme = make<Client>(main.context(), {.name = "Acme"});
    auto& zed = make<Client>(main.context(), {.name = "Zed"});
    zed.setArchived(true);
    main.save();
    ClientForm first(environment);
    first.set(&ClientValues::name, "Bee 10");
    const auto bee = first.save();
    ASSERT_TRUE(bee);
    ProjectForm form(environment, acme.id());
    EXPECT_THAT(names(form.clients()), ElementsAre("Acme", "Bee 10"));
    EXPECT_THAT(names(ProjectForm(environment, zed.id()).clients()), ElementsAre("Acme", "Bee 10", "Zed"));
    GroupForm group(environment, acme.id());
    ASSERT_TRUE(group.save());
    form.set(&ProjectValues::name, "Site");
    ASSERT_TRUE(form.save());
    auto& site = record<Project>("Site");
    EXPECT_EQ(site.sortOrder(), 1); // behind the group
    EXPECT_EQ(history.undoTitle(), "Undo Add Project");

    ProjectForm edit(environment, site);
    EXPECT_EQ(edit.windowTitle(), "Edit Project");
    elsewhere([&](ModelContext& other) { named<Project>(other, "Site").setProjectDescription("From elsewhere"); });
    edit.set(&ProjectValues::client, std::optional<UUID>());
    ASSERT_TRUE(edit.save());
    EXPECT_EQ(site.client(), nullptr);
    EXPECT_EQ(site.projectDescription(), "From elsewhere"); // only what was changed is written
    ASSERT_TRUE(history.undo());
    EXPECT_EQ(site.client(), &acme);
    EXPECT_EQ(site.sortOrder(), 1);
    const Date before = site.updatedAt();
    clock.advance(1min);
    EXPECT_EQ(ProjectForm(environment, site).save(), site.id());
    EXPECT_EQ(site.updatedAt(), before);
    ProjectForm orphan(environment, *bee);
    orphan.set(&ProjectValues::name, "Orphan");
    elsewhere([&](ModelContext& other) { other.remove(named<Client>(other, "Bee 10")); });
    EXPECT_FALSE(orphan.save());
    EXPECT_EQ(orphan.error(), "Client was deleted meanwhile");
}

TEST_F(FormTest, makeAndChangeTasks) {
    settings.set("defaultPriority", 3);
    auto& site = make<Project>(main.context(), {.name = "Site"});
    auto& parent = make<ProjectTask>(main.context(), {.title = "Relaunch", .project = &site});
    auto& tag = make<Tag>(main.context(), {.name = "urgent"});
    main.save();
    TaskForm form(environment, {.parent = parent.id()});
    form.set(&TaskValues::title, "Write the offer");
    form.toggleTag(tag.id());
    EXPECT_FALSE(form.setDueText("someday or other"));
    EXPECT_TRUE(form.setDueText("tomorrow 9:30"));
    const auto made = form.save();
    ASSERT_TRUE(made);
    auto& task = record<ProjectTask>("Write the offer");
    EXPECT_EQ(task.project(), &site);
    EXPECT_EQ(task.parentTask(), &parent);
    EXPECT_EQ(task.priority(), TaskPriority::urgent);
    EXPECT_EQ(task.dueDate(), date("2026-01-16T09:30:00Z"));
    EXPECT_TRUE(task.dueHasTime());
    EXPECT_THAT(namesOf(task.tags()), ElementsAre("urgent"));

    TaskForm circle(environment, parent);
    EXPECT_THAT(names(circle.parents("")), IsEmpty()); // neither itself nor what is below it
    circle.setParent(task.id());
    EXPECT_FALSE(circle.save());
    EXPECT_EQ(circle.error(), "A task can’t stand under itself");

    TaskForm edit(environment, task);
    edit.toggleTag(tag.id());
    edit.toggleTag(tag.id());
    EXPECT_FALSE(edit.isChanged());
    edit.set(&TaskValues::due, std::optional(DueChoice{std::chrono::local_days{2026y / 1 / 20}}));
    edit.set(&TaskValues::project, std::optional<UUID>());
    edit.set(&TaskValues::status, TaskStatus::done);
    ASSERT_TRUE(edit.save());
    EXPECT_EQ(task.dueDate(), date("2026-01-20T00:00:00Z"));
    EXPECT_FALSE(task.dueHasTime());
    EXPECT_EQ(task.project(), nullptr);
    EXPECT_TRUE(task.isCompleted());
    ASSERT_TRUE(history.undo());
    EXPECT_TRUE(task.dueHasTime());
    EXPECT_FALSE(task.isCompleted());
}

} // namespace
} // namespace quillorn
