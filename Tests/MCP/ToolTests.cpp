#include "MCP/MCPTest.h"
#include "Support/CrowdedStore.h"

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

const Json absent;

struct MCPToolTest : MCPTest {
    std::string add(const std::string& tool, const std::string& arguments) { return done(tool, arguments).id(); }
    std::string addTask(const std::string& title) { return add("create_task", object(R"("title": "{}")", title)); }
    ToolResult ofTask(const std::string& tool, const std::string& id) {
        return done(tool, object(R"("taskId": "{}")", id));
    }
};

TEST_F(MCPToolTest, faultsHaveTheirWords) {
    const auto task = addTask("Task");
    const auto child = add("add_subtask", object(R"("parentTaskId": "{}", "title": "Child")", task));
    const auto grandchild = add("add_subtask", object(R"("parentTaskId": "{}", "title": "Grandchild")", child));
    const auto note = add("create_note", R"({"title": "No comment"})");
    const struct {
        std::string tools; // all of them say the same
        std::string arguments, words;
    } cases[] = {
        {"get_client update_client", "", "clientId is required and must be a valid UUID"},
        {"get_client update_client", R"("clientId": 7)", "clientId is required and must be a valid UUID"},
        {"get_client update_client", R"("clientId": "7")", "clientId is required and must be a valid UUID"},
        {"get_client update_client", R"("clientId": "{unknown}")", "Client not found: {unknown}"},
        {"create_project", R"("name": "P", "clientId": "{unknown}")", "Client not found: {unknown}"},
        {"create_client create_project create_tag", "", "name is required and cannot be empty"},
        {"create_client create_project create_tag", R"("name": " \t ")", "name is required and cannot be empty"},
        {"create_client create_project create_tag", R"("name": null)", "name is required and cannot be empty"},
        {"get_project update_project", "", "projectId is required and must be a valid UUID"},
        {"get_project update_project", R"("projectId": "{unknown}")", "Project not found: {unknown}"},
        {"create_task update_task create_note update_note start_timer",
         R"("title": "T", "taskId": "{task}", "noteId": "{note}", "projectId": "{unknown}")",
         "Project not found: {unknown}"},
        {"get_task update_task complete_task incomplete_task delete_task list_task_comments add_task_comment "
         "list_subtasks convert_to_subtask add_tags_to_task remove_tag_from_task",
         R"("text": "T", "tagIds": ["{task}"], "tagId": "{task}")", "taskId is required and must be a valid UUID"},
        {"get_task update_task complete_task incomplete_task delete_task list_task_comments add_task_comment "
         "list_subtasks convert_to_subtask add_tags_to_task remove_tag_from_task start_timer",
         R"("taskId": "{unknown}", "text": "T", "parentTaskId": "{task}", "tagIds": ["{task}"], "tagId": "{task}")",
         "Task not found: {unknown}"},
        {"create_task add_subtask", R"("parentTaskId": "{task}", "title": "  ")",
         "title is required and cannot be empty"},
        {"add_task_comment", R"("taskId": "{task}")", "text is required and cannot be empty"},
        {"add_task_comment", R"("taskId": "{task}", "text": "\n \n")", "text is required and cannot be empty"},
        {"create_task update_task add_subtask convert_to_subtask",
         R"("title": "T", "taskId": "{task}", "parentTaskId": "{unknown}")", "Parent task not found: {unknown}"},
        {"add_subtask convert_to_subtask", R"("title": "T", "taskId": "{task}", "parentTaskId": "")",
         "parentTaskId is required and must be a valid UUID"},
        {"update_task convert_to_subtask", R"("taskId": "{task}", "parentTaskId": "{task}", "status": 3)",
         "A task cannot be its own parent"},
        {"update_task convert_to_subtask", R"("taskId": "{task}", "parentTaskId": "{grandchild}", "title": "X")",
         "Cannot create circular parent-child relationship"},
        {"delete_task_comment", "", "commentId is required and must be a valid UUID"},
        {"delete_task_comment", R"("commentId": "{unknown}")", "Comment not found: {unknown}"},
        {"delete_task_comment", R"("commentId": "{note}")", "Comment not found: {note}"},
        {"stop_timer update_time_entry delete_time_entry", "", "timeEntryId is required and must be a valid UUID"},
        {"stop_timer update_time_entry delete_time_entry", R"("timeEntryId": "{unknown}")",
         "Time entry not found: {unknown}"},
        {"log_time", R"("endTime": "2026-01-15T10:00:00Z")", "startTime is required and must be a valid ISO8601 date"},
        {"log_time", R"("startTime": "yesterday", "endTime": "2026-01-15T10:00:00Z")",
         "startTime is required and must be a valid ISO8601 date"},
        {"log_time", R"("startTime": "2026-01-15T10:00:00Z", "endTime": 5)",
         "endTime is required and must be a valid ISO8601 date"},
        {"get_note update_note delete_note toggle_pin_note", "", "noteId is required and must be a valid UUID"},
        {"get_note update_note delete_note toggle_pin_note", R"("noteId": "{unknown}")", "Note not found: {unknown}"},
        {"update_tag delete_tag remove_tag_from_task list_tasks_by_tag", R"("taskId": "{task}")",
         "tagId is required and must be a valid UUID"},
        {"update_tag delete_tag list_tasks_by_tag", R"("tagId": "{unknown}")", "Tag not found: {unknown}"},
        {"add_tags_to_task", R"("taskId": "{task}")", "tagIds is required and cannot be empty"},
        {"add_tags_to_task", R"("taskId": "{task}", "tagIds": [])", "tagIds is required and cannot be empty"},
        {"add_tags_to_task", R"("taskId": "{task}", "tagIds": ["{unknown}", 3])", "All tagIds must be valid UUIDs"},
        {"add_tags_to_task", R"("taskId": "{task}", "tagIds": ["{unknown}"])", "Tag not found: {unknown}"},
    };
    const StoreIds ids{{"unknown", unknownId}, {"task", task}, {"grandchild", grandchild}, {"note", note}};
    for (const auto& [tools, arguments, words] : cases) {
        std::istringstream names(tools);
        for (std::string tool; names >> tool;)
            EXPECT_EQ(faultOf(tool, "{" + withIds(arguments, ids) + "}"), withIds(words, ids)) << tool << arguments;
    }
    EXPECT_EQ(ofTask("delete_task", task).text, R"({"deleted": true})");
    EXPECT_EQ(faultOf("delete_task", object(R"("taskId": "{}")", task)), "Task not found: " + task);
}

TEST_F(MCPToolTest, clientsAndProjectsLiveAndAreArchived) {
    const auto zoe = done("create_client", R"({"name": "Zoe"})");
    EXPECT_EQ(zoe["color"], Json("#007AFF"));
    EXPECT_EQ(zoe["icon"], Json("building.2.fill"));
    const auto adam = add("create_client", R"({"name": "adam", "description": "D", "color": "red", "icon": "star"})");
    EXPECT_THAT(done("list_clients").all("name"), ElementsAre("adam", "Zoe"));
    EXPECT_THAT(done("list_clients", R"({"name": "ZO"})").all("name"), ElementsAre("Zoe"));

    const auto first = add("create_project", object(R"("name": "First", "clientId": "{}")", adam));
    const auto second = done("create_project", object(R"("name": "Second", "clientId": "{}")", adam));
    EXPECT_EQ(second["clientId"], Json(adam));
    EXPECT_EQ(foreign.integer("SELECT max(sortOrder) - min(sortOrder) FROM Project"), 1); // each at the end
    clock.advance(std::chrono::hours(1));
    const auto changed =
        done("update_project", object(R"("projectId": "{}", "name": "One", "isArchived": true)", first));
    EXPECT_EQ(changed["name"], Json("One"));
    EXPECT_EQ(changed["updatedAt"], Json("2026-01-15T13:00:00Z"));
    EXPECT_EQ(changed["createdAt"], Json("2026-01-15T12:00:00Z"));
    EXPECT_THAT(done("list_projects", object(R"("clientId": "{}")", adam)).all("name"), ElementsAre("Second"));
    EXPECT_THAT(done("list_projects", R"({"includeArchived": true, "name": "on"})").all("name"),
                ElementsAre("One", "Second"));
    EXPECT_EQ(done("get_project", object(R"("projectId": "{}")", first))["isArchived"], Json(true));

    const auto gone = done("update_client", object(R"("clientId": "{}", "name": "", "isArchived": true)", adam));
    EXPECT_EQ(gone["name"], Json(""));
    EXPECT_EQ(gone["description"], Json("D"));
    EXPECT_THAT(done("list_projects").all("name"), IsEmpty());
    EXPECT_THAT(done("list_clients").all("name"), ElementsAre("Zoe"));
    EXPECT_THAT(done("list_clients", R"({"includeArchived": true})").all("name"), ElementsAre("", "Zoe"));
    EXPECT_EQ(done("get_client", object(R"("clientId": "{}")", adam))["projectCount"], Json(2));
}

TEST_F(MCPToolTest, tasksAreMadeChangedAndFound) {
    const auto project = add("create_project", R"({"name": "Project"})");
    const auto other = add("create_project", R"({"name": "Other"})");
    const auto plain =
        done("create_task", R"({"title": "Plain", "dueDate": "soon", "projectId": "no id", "priority": 9})");
    EXPECT_EQ(plain["priority"], Json(1));
    EXPECT_EQ(plain["status"], Json(0));
    EXPECT_EQ(plain["dueDate"], absent);
    EXPECT_EQ(plain["projectId"], absent);
    const auto full = done("create_task", object(R"("title": "Full", "description": "D", "priority": 3, "status": 3,
        "dueDate": "2026-01-14T10:00:00+02:00", "projectId": "{}")",
                                                 project));
    EXPECT_EQ(full["dueDate"], Json("2026-01-14T08:00:00Z"));
    EXPECT_EQ(full["completedAt"], Json("2026-01-15T12:00:00Z"));

    // A new subtask takes its parent's project, unless it is given another; one that moves below a parent keeps its
    // own.
    const auto under = [&](const std::string& tool, const std::string& more = "") {
        return done(tool, object(R"("title": "Sub", "parentTaskId": "{}"{})", full.id(), more));
    };
    EXPECT_EQ(under("add_subtask")["projectId"], Json(project));
    EXPECT_EQ(under("create_task")["projectId"], Json(project));
    const auto sub = under("create_task", fmt::format(R"(, "projectId": "{}")", other));
    EXPECT_EQ(sub["projectId"], Json(other));
    EXPECT_EQ(sub["depth"], Json(1));
    clock.advance(std::chrono::hours(1));
    const auto moved =
        done("convert_to_subtask", object(R"("taskId": "{}", "parentTaskId": "{}")", plain.id(), sub.id()));
    EXPECT_EQ(moved["projectId"], absent);
    EXPECT_EQ(moved["depth"], Json(2));
    EXPECT_EQ(moved["updatedAt"], Json("2026-01-15T13:00:00Z"));
    EXPECT_EQ(ofTask("list_subtasks", full.id()).all("title").size(), 3U);
    done("complete_task", object(R"("taskId": "{}")", sub.id()));
    EXPECT_EQ(ofTask("list_subtasks", full.id()).all("title").size(), 2U);
    EXPECT_EQ(done("list_subtasks", object(R"("taskId": "{}", "includeCompleted": true)", full.id())).all("id").size(),
              3U);

    const auto reopened = done("update_task", object(R"("taskId": "{}", "title": "", "status": 2, "parentTaskId": "",
        "priority": 7, "dueDate": "never")",
                                                     sub.id()));
    EXPECT_EQ(reopened["title"], Json(""));
    EXPECT_EQ(reopened["status"], Json(2));
    EXPECT_EQ(reopened["completedAt"], absent);
    EXPECT_EQ(reopened["parentTaskId"], absent);
    EXPECT_EQ(reopened["priority"], Json(1));
    const auto back = done("update_task", object(R"("taskId": "{}", "parentTaskId": "{}", "projectId": "{}")", sub.id(),
                                                 full.id(), project));
    EXPECT_EQ(back["parentTaskId"], Json(full.id()));
    EXPECT_EQ(back["projectId"], Json(project));
    EXPECT_EQ(ofTask("incomplete_task", full.id())["status"], Json(0));

    const struct {
        std::string filter;
        std::size_t count;
    } searches[] = {{"", 5},
                    {R"("title": "SUB")", 2},
                    {fmt::format(R"("projectId": "{}")", project), 4},
                    {R"("status": 2)", 1},
                    {R"("status": "2")", 5}, // of another form: absent
                    {R"("status": 9)", 0},
                    {R"("priority": 3, "completed": false)", 1},
                    {R"("completed": true)", 0},
                    {fmt::format(R"("tagId": "{}")", unknownId), 0}};
    for (const auto& [filter, count] : searches)
        EXPECT_EQ(done("list_tasks", "{" + filter + "}").all("id").size(), count) << filter;
    done("update_project", object(R"("projectId": "{}", "isArchived": true)", project));
    EXPECT_THAT(done("list_tasks").all("title"), ElementsAre("Plain"));
    EXPECT_EQ(done("list_tasks", R"({"includeArchived": true})").all("id").size(), 5U);
    EXPECT_EQ(ofTask("get_task", full.id())["subtaskCount"], Json(3));
}

TEST_F(MCPToolTest, commentsComeNewestFirstAndTouchTheirTask) {
    const auto project = add("create_project", R"({"name": "Project"})");
    const auto task = add("create_task", object(R"("title": "Task", "projectId": "{}")", project));
    clock.advance(std::chrono::minutes(1));
    done("add_task_comment", object(R"("taskId": "{}", "text": " First \n")", task));
    EXPECT_EQ(ofTask("get_task", task)["updatedAt"], Json("2026-01-15T12:01:00Z"));
    clock.advance(std::chrono::minutes(1));
    const auto second = done("add_task_comment", object(R"("taskId": "{}", "text": "Second")", task));
    EXPECT_EQ(second["title"], Json(""));
    EXPECT_EQ(second["projectId"], Json(project));
    EXPECT_THAT(ofTask("list_task_comments", task).all("content"), ElementsAre("Second", "First"));
    clock.advance(std::chrono::minutes(1));
    EXPECT_EQ(done("delete_task_comment", object(R"("commentId": "{}")", second.id())).text, R"({"deleted": true})");
    EXPECT_THAT(ofTask("list_task_comments", task).all("content"), ElementsAre("First"));
    EXPECT_EQ(ofTask("get_task", task)["updatedAt"], Json("2026-01-15T12:03:00Z"));
}

TEST_F(MCPToolTest, timeIsTrackedAndLogged) {
    const auto project = add("create_project", R"({"name": "Project"})");
    const auto task = add("create_task", object(R"("title": "Task", "projectId": "{}", "status": 3)", project));
    const auto bare = done("start_timer");
    EXPECT_EQ(bare["isRunning"], Json(true));
    EXPECT_EQ(bare["taskId"], absent);
    EXPECT_EQ(bare["projectId"], absent);
    const auto onTask = done("start_timer", object(R"("taskId": "{}", "notes": "N", "projectId": "none")", task));
    EXPECT_EQ(ofTask("get_task", task)["status"], Json(1)); // completed before, and open again
    EXPECT_EQ(ofTask("get_task", task)["isCompleted"], Json(false));
    EXPECT_EQ(done("list_time_entries", R"({"running": true})").all("id").size(), 2U); // the first one runs on

    const auto stop = [&] { return done("stop_timer", object(R"("timeEntryId": "{}")", bare.id()))["endTime"]; };
    clock.advance(std::chrono::minutes(5));
    EXPECT_EQ(stop(), Json("2026-01-15T12:05:00Z"));
    clock.advance(std::chrono::minutes(5));
    EXPECT_EQ(stop(), Json("2026-01-15T12:10:00Z"));

    const auto logged = done("log_time", object(R"("startTime": "2026-01-15T10:00:00Z", "notes": "L",
        "endTime": "2026-01-15T09:00:00Z", "taskId": "{}", "projectId": "{}")",
                                                unknownId, project));
    EXPECT_EQ(logged["taskId"], absent);
    EXPECT_EQ(logged["projectId"], Json(project));
    EXPECT_EQ(logged["duration"], Json(-3600.0));
    const auto changed = done("update_time_entry", object(R"("timeEntryId": "{}", "notes": "M", "startTime": "no date",
        "endTime": "2026-01-15T11:00:00Z", "taskId": "{}")",
                                                          logged.id(), task));
    EXPECT_EQ(changed["notes"], Json("M"));
    EXPECT_EQ(changed["duration"], Json(3600.0));
    EXPECT_EQ(changed["taskId"], absent);

    const auto count = [&](const std::string& filter) {
        return done("list_time_entries", "{" + filter + "}").all("id").size();
    };
    EXPECT_EQ(count(fmt::format(R"("taskId": "{}")", task)), 1U);
    EXPECT_EQ(count(fmt::format(R"("projectId": "{}")", project)), 2U); // its own and its task's
    done("update_project", object(R"("projectId": "{}", "isArchived": true)", project));
    EXPECT_EQ(count(""), 1U);
    EXPECT_EQ(count(R"("includeArchived": true)"), 3U);
    done("delete_time_entry", object(R"("timeEntryId": "{}")", logged.id()));
    EXPECT_EQ(count(R"("includeArchived": true)"), 2U);
}

TEST_F(MCPToolTest, notesAreWrittenPinnedAndSearched) {
    const auto project = add("create_project", R"({"name": "Project"})");
    const auto note = done("create_note");
    EXPECT_EQ(note["title"], Json("Untitled Note"));
    EXPECT_EQ(note["content"], Json(""));
    const auto ofNote = object(R"("noteId": "{}")", note.id());
    clock.advance(std::chrono::minutes(1));
    const auto changed =
        done("update_note", object(R"("noteId": "{}", "content": "Über", "projectId": "{}")", note.id(), project));
    EXPECT_EQ(changed["updatedAt"], Json("2026-01-15T12:01:00Z"));
    EXPECT_EQ(changed["projectId"], Json(project));
    EXPECT_EQ(done("toggle_pin_note", ofNote)["isPinned"], Json(true));
    done("create_note", R"({"title": "Überall", "content": "C"})");
    EXPECT_THAT(done("search_notes", R"({"search": "über"})").all("title"),
                UnorderedElementsAre("Überall", "Untitled Note"));
    EXPECT_THAT(done("search_notes", R"({"pinned": true})").all("title"), ElementsAre("Untitled Note"));
    EXPECT_THAT(done("search_notes", object(R"("projectId": "{}")", project)).all("id"), ElementsAre(note.id()));
    done("update_project", object(R"("projectId": "{}", "isArchived": true)", project));
    EXPECT_THAT(done("search_notes").all("title"), ElementsAre("Überall"));
    EXPECT_EQ(done("search_notes", R"({"includeArchived": true})").all("id").size(), 2U);
    EXPECT_EQ(done("toggle_pin_note", ofNote)["isPinned"], Json(false));
    EXPECT_EQ(done("get_note", ofNote)["content"], Json("Über"));
    EXPECT_EQ(done("delete_note", ofNote).text, R"({"deleted": true})");
    EXPECT_EQ(faultOf("get_note", ofNote), "Note not found: " + note.id());
}

TEST_F(MCPToolTest, tagsAreOnTasksOnce) {
    const auto task = addTask("Task");
    const auto red = add("create_tag", R"({"name": "red", "color": "any text"})");
    const auto blue = add("create_tag", R"({"name": "Blue"})");
    clock.advance(std::chrono::minutes(1));
    const auto tagged =
        done("add_tags_to_task", object(R"("taskId": "{0}", "tagIds": ["{1}", "{2}", "{1}"])", task, red, blue));
    EXPECT_EQ(tagged["tags"].asArray()->size(), 2U);
    EXPECT_EQ(tagged["updatedAt"], Json("2026-01-15T12:01:00Z"));
    EXPECT_EQ(
        done("add_tags_to_task", object(R"("taskId": "{}", "tagIds": ["{}"])", task, red))["tags"].asArray()->size(),
        2U);
    EXPECT_THAT(done("list_tags").all("name"), ElementsAre("Blue", "red"));
    EXPECT_THAT(done("list_tags", R"({"name": "RE"})").all("taskCount"), ElementsAre(1));
    EXPECT_EQ(done("update_tag", object(R"("tagId": "{}", "name": "Rot")", red))["color"], Json("any text"));

    const auto byTag = [&](const std::string& more = "") {
        return done("list_tasks_by_tag", object(R"("tagId": "{}"{})", red, more)).all("title");
    };
    EXPECT_THAT(byTag(), ElementsAre("Task"));
    const auto project = add("create_project", R"({"name": "Project"})");
    done("update_task", object(R"("taskId": "{}", "projectId": "{}")", task, project));
    done("update_project", object(R"("projectId": "{}", "isArchived": true)", project));
    EXPECT_THAT(byTag(), IsEmpty());
    EXPECT_THAT(byTag(R"(, "includeArchived": true)"), ElementsAre("Task"));

    clock.advance(std::chrono::minutes(1));
    const auto untagged = done("remove_tag_from_task", object(R"("taskId": "{}", "tagId": "{}")", task, unknownId));
    EXPECT_EQ(untagged["tags"].asArray()->size(), 2U);
    EXPECT_EQ(untagged["updatedAt"], Json("2026-01-15T12:02:00Z"));
    EXPECT_EQ(
        done("remove_tag_from_task", object(R"("taskId": "{}", "tagId": "{}")", task, blue))["tags"].asArray()->size(),
        1U);
    EXPECT_EQ(done("delete_tag", object(R"("tagId": "{}")", red)).text, R"({"deleted": true})");
    EXPECT_THAT(*ofTask("get_task", task)["tags"].asArray(), IsEmpty());
}

TEST_F(MCPToolTest, aSaveThatFailsIsAToolErrorAndChangesNothing) {
    const auto task = addTask("Task");
    foreign.execute("CREATE TRIGGER refuse BEFORE UPDATE ON ProjectTask BEGIN SELECT raise(ABORT, 'not today'); END");
    EXPECT_THAT(faultOf("complete_task", object(R"("taskId": "{}")", task)), testing::HasSubstr("not today"));
    EXPECT_EQ(ofTask("get_task", task)["isCompleted"], Json(false));
}

} // namespace
} // namespace quillorn
