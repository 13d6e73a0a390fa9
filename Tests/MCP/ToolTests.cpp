#include "MCP/MCPTest.h"
#include "Support/CrowdedStore.h"

namespace quillorn {
namespace {

using testing::UnorderedElementsAre;

using MCPToolTest = MCPTest;

TEST_F(MCPToolTest, faultsHaveTheirWords) {
    const auto task = add("create_task", R"("title": "Task")");
    const auto child = add("add_subtask", R"("parentTaskId": "{}", "title": "Child")", task);
    const auto grandchild = add("add_subtask", R"("parentTaskId": "{}", "title": "Grandchild")", child);
    const auto note = add("create_note", R"("title": "No comment")");
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
    done("create_client", R"("name": "Zoe")").expect(R"("color": "#007AFF", "icon": "building.2.fill")");
    const auto made = done("create_client", R"("name": "adam", "description": "D", "color": "red", "icon": "star")");
    made.expect(R"("description": "D", "color": "red", "icon": "star")");
    const auto adam = made.id();
    EXPECT_THAT(done("list_clients").all("name"), ElementsAre("adam", "Zoe"));
    EXPECT_THAT(done("list_clients", R"("name": "ZO")").all("name"), ElementsAre("Zoe"));

    const auto first = add("create_project", R"("name": "First", "clientId": "{}")", adam);
    done("create_project", R"("name": "Second", "clientId": "{}")", adam).expect(R"("clientId": "{}")", adam);
    EXPECT_EQ(foreign.integer("SELECT max(sortOrder) - min(sortOrder) FROM Project"), 1); // each at the end
    clock.advance(1h);
    done("update_project", R"("projectId": "{}", "name": "One", "isArchived": true)", first)
        .expect(R"("name": "One", "updatedAt": "2026-01-15T13:00:00Z", "createdAt": "2026-01-15T12:00:00Z")");
    EXPECT_THAT(done("list_projects", R"("clientId": "{}")", adam).all("name"), ElementsAre("Second"));
    EXPECT_THAT(done("list_projects", R"("includeArchived": true, "name": "on")").all("name"),
                ElementsAre("One", "Second"));
    done("get_project", R"("projectId": "{}")", first).expect(R"("isArchived": true)");

    done("update_client", R"("clientId": "{}", "name": "", "isArchived": true)", adam)
        .expect(R"("name": "", "description": "D")");
    EXPECT_THAT(done("list_projects").all("name"), IsEmpty());
    EXPECT_THAT(done("list_clients").all("name"), ElementsAre("Zoe"));
    EXPECT_THAT(done("list_clients", R"("includeArchived": true)").all("name"), ElementsAre("", "Zoe"));
    done("get_client", R"("clientId": "{}")", adam).expect(R"("projectCount": 2)");
}

TEST_F(MCPToolTest, tasksAreMadeChangedAndFound) {
    const auto project = add("create_project", R"("name": "Project")");
    const auto other = add("create_project", R"("name": "Other")");
    const auto plain =
        done("create_task", R"("title": "Plain", "dueDate": "soon", "projectId": "no id", "priority": 9)");
    plain.expect(R"("priority": 1, "status": 0, "dueDate": null, "projectId": null)");
    const auto fullTask = done("create_task", R"("title": "Full", "description": "D", "priority": 3, "status": 3,
        "dueDate": "2026-01-14T10:00:00+02:00", "projectId": "{}")",
                               project);
    fullTask.expect(R"("dueDate": "2026-01-14T08:00:00Z", "completedAt": "2026-01-15T12:00:00Z")");
    const auto full = fullTask.id();

    // A new subtask takes its parent's project, unless it is given another; one that moves below a parent keeps its
    // own.
    const auto under = [&](const std::string& tool, const std::string& more = "") {
        return done(tool, R"("title": "Sub", "parentTaskId": "{}"{})", full, more);
    };
    for (const char* tool : {"add_subtask", "create_task"})
        under(tool).expect(R"("projectId": "{}")", project);
    const auto made = under("create_task", fmt::format(R"(, "projectId": "{}")", other));
    made.expect(R"("projectId": "{}", "depth": 1)", other);
    const auto sub = made.id();
    clock.advance(1h);
    done("convert_to_subtask", R"("taskId": "{}", "parentTaskId": "{}")", plain.id(), sub)
        .expect(R"("projectId": null, "depth": 2, "updatedAt": "2026-01-15T13:00:00Z")");
    EXPECT_EQ(ofTask("list_subtasks", full).all("title").size(), 3U);
    ofTask("complete_task", sub);
    EXPECT_EQ(ofTask("list_subtasks", full).all("title").size(), 2U);
    EXPECT_EQ(done("list_subtasks", R"("taskId": "{}", "includeCompleted": true)", full).all("id").size(), 3U);

    done("update_task", R"("taskId": "{}", "title": "", "status": 2, "parentTaskId": "", "priority": 7,
        "dueDate": "never")",
         sub)
        .expect(R"("title": "", "status": 2, "completedAt": null, "parentTaskId": null, "priority": 1)");
    done("update_task", R"("taskId": "{}", "parentTaskId": "{}", "projectId": "{}")", sub, full, project)
        .expect(R"("parentTaskId": "{}", "projectId": "{}")", full, project);
    ofTask("incomplete_task", full).expect(R"("status": 0)");

    const std::pair<std::size_t, std::string> searches[] = {{5, ""},
                                                            {2, R"("title": "SUB")"},
                                                            {4, fmt::format(R"("projectId": "{}")", project)},
                                                            {1, R"("status": 2)"},
                                                            {5, R"("status": "2")"}, // of another form: absent
                                                            {0, R"("status": 9)"},
                                                            {1, R"("priority": 3, "completed": false)"},
                                                            {0, R"("completed": true)"},
                                                            {0, fmt::format(R"("tagId": "{}")", unknownId)}};
    for (const auto& [count, filter] : searches)
        EXPECT_EQ(done("list_tasks", "{}", filter).all("id").size(), count) << filter;
    done("update_project", R"("projectId": "{}", "isArchived": true)", project);
    EXPECT_THAT(done("list_tasks").all("title"), ElementsAre("Plain"));
    EXPECT_EQ(done("list_tasks", R"("includeArchived": true)").all("id").size(), 5U);
    ofTask("get_task", full).expect(R"("subtaskCount": 3)");
}

TEST_F(MCPToolTest, commentsComeNewestFirstAndTouchTheirTask) {
    const auto project = add("create_project", R"("name": "Project")");
    const auto task = add("create_task", R"("title": "Task", "projectId": "{}")", project);
    clock.advance(1min);
    done("add_task_comment", R"("taskId": "{}", "text": " First \n")", task);
    ofTask("get_task", task).expect(R"("updatedAt": "2026-01-15T12:01:00Z")");
    clock.advance(1min);
    const auto second = done("add_task_comment", R"("taskId": "{}", "text": "Second")", task);
    second.expect(R"("title": "", "projectId": "{}")", project);
    EXPECT_THAT(ofTask("list_task_comments", task).all("content"), ElementsAre("Second", "First"));
    clock.advance(1min);
    EXPECT_EQ(done("delete_task_comment", R"("commentId": "{}")", second.id()).text, R"({"deleted": true})");
    EXPECT_THAT(ofTask("list_task_comments", task).all("content"), ElementsAre("First"));
    ofTask("get_task", task).expect(R"("updatedAt": "2026-01-15T12:03:00Z")");
}

TEST_F(MCPToolTest, timeIsTrackedAndLogged) {
    const auto project = add("create_project", R"("name": "Project")");
    const auto task = add("create_task", R"("title": "Task", "projectId": "{}", "status": 3)", project);
    const auto bare = done("start_timer");
    bare.expect(R"("isRunning": true, "taskId": null, "projectId": null)");
    done("start_timer", R"("taskId": "{}", "notes": "N", "projectId": "none")", task).expect(R"("notes": "N")");
    ofTask("get_task", task).expect(R"("status": 1, "isCompleted": false)");         // completed before, and open again
    EXPECT_EQ(done("list_time_entries", R"("running": true)").all("id").size(), 2U); // the first one runs on

    for (const char* end : {"2026-01-15T12:05:00Z", "2026-01-15T12:10:00Z"}) {
        clock.advance(5min);
        done("stop_timer", R"("timeEntryId": "{}")", bare.id()).expect(R"("endTime": "{}")", end);
    }

    const auto logged = done("log_time", R"("startTime": "2026-01-15T10:00:00Z", "notes": "L",
        "endTime": "2026-01-15T09:00:00Z", "taskId": "{}", "projectId": "{}")",
                             unknownId, project);
    logged.expect(R"("taskId": null, "projectId": "{}", "duration": -3600.0, "notes": "L")", project);
    done("update_time_entry", R"("timeEntryId": "{}", "notes": "M", "startTime": "no date",
        "endTime": "2026-01-15T11:00:00Z", "taskId": "{}")",
         logged.id(), task)
        .expect(R"("notes": "M", "duration": 3600.0, "taskId": null)");

    const auto count = [&](const std::string& filter) {
        return done("list_time_entries", "{}", filter).all("id").size();
    };
    EXPECT_EQ(count(fmt::format(R"("taskId": "{}")", task)), 1U);
    EXPECT_EQ(count(fmt::format(R"("projectId": "{}")", project)), 2U); // its own and its task's
    done("update_project", R"("projectId": "{}", "isArchived": true)", project);
    EXPECT_EQ(count(""), 1U);
    EXPECT_EQ(count(R"("includeArchived": true)"), 3U);
    done("delete_time_entry", R"("timeEntryId": "{}")", logged.id());
    EXPECT_EQ(count(R"("includeArchived": true)"), 2U);
}

TEST_F(MCPToolTest, notesAreWrittenPinnedAndSearched) {
    const auto project = add("create_project", R"("name": "Project")");
    const auto made = done("create_note");
    made.expect(R"("title": "Untitled Note", "content": "")");
    const auto note = made.id();
    const auto ofNote = [&](const char* tool) { return done(tool, R"("noteId": "{}")", note); };
    clock.advance(1min);
    done("update_note", R"("noteId": "{}", "content": "Über", "projectId": "{}")", note, project)
        .expect(R"("updatedAt": "2026-01-15T12:01:00Z", "projectId": "{}")", project);
    ofNote("toggle_pin_note").expect(R"("isPinned": true)");
    done("create_note", R"("title": "Überall", "content": "C")");
    EXPECT_THAT(done("search_notes", R"("search": "über")").all("title"),
                UnorderedElementsAre("Überall", "Untitled Note"));
    EXPECT_THAT(done("search_notes", R"("pinned": true)").all("title"), ElementsAre("Untitled Note"));
    EXPECT_THAT(done("search_notes", R"("projectId": "{}")", project).all("id"), ElementsAre(note));
    done("update_project", R"("projectId": "{}", "isArchived": true)", project);
    EXPECT_THAT(done("search_notes").all("title"), ElementsAre("Überall"));
    EXPECT_EQ(done("search_notes", R"("includeArchived": true)").all("id").size(), 2U);
    ofNote("toggle_pin_note").expect(R"("isPinned": false)");
    ofNote("get_note").expect(R"("content": "Über")");
    EXPECT_EQ(ofNote("delete_note").text, R"({"deleted": true})");
    EXPECT_EQ(faultOf("get_note", object(R"("noteId": "{}")", note)), "Note not found: " + note);
}

TEST_F(MCPToolTest, tagsAreOnTasksOnce) {
    const auto task = add("create_task", R"("title": "Task")");
    const auto red = add("create_tag", R"("name": "red", "color": "any text")");
    const auto blue = add("create_tag", R"("name": "Blue")");
    const auto tagCount = [](const ToolResult& result) { return result["tags"].asArray()->size(); };
    clock.advance(1min);
    const auto tagged =
        done("add_tags_to_task", R"("taskId": "{0}", "tagIds": ["{1}", "{2}", "{1}"])", task, red, blue);
    EXPECT_EQ(tagCount(tagged), 2U);
    tagged.expect(R"("updatedAt": "2026-01-15T12:01:00Z")");
    EXPECT_EQ(tagCount(done("add_tags_to_task", R"("taskId": "{}", "tagIds": ["{}"])", task, red)), 2U);
    EXPECT_THAT(done("list_tags").all("name"), ElementsAre("Blue", "red"));
    EXPECT_THAT(done("list_tags", R"("name": "RE")").all("taskCount"), ElementsAre(1));
    done("update_tag", R"("tagId": "{}", "name": "Rot")", red).expect(R"("name": "Rot", "color": "any text")");

    const auto byTag = [&](const std::string& more = "") {
        return done("list_tasks_by_tag", R"("tagId": "{}"{})", red, more).all("title");
    };
    EXPECT_THAT(byTag(), ElementsAre("Task"));
    const auto project = add("create_project", R"("name": "Project")");
    done("update_task", R"("taskId": "{}", "projectId": "{}")", task, project);
    done("update_project", R"("projectId": "{}", "isArchived": true)", project);
    EXPECT_THAT(byTag(), IsEmpty());
    EXPECT_THAT(byTag(R"(, "includeArchived": true)"), ElementsAre("Task"));

    clock.advance(1min);
    const auto untagged = done("remove_tag_from_task", R"("taskId": "{}", "tagId": "{}")", task, unknownId);
    EXPECT_EQ(tagCount(untagged), 2U);
    untagged.expect(R"("updatedAt": "2026-01-15T12:02:00Z")");
    EXPECT_EQ(tagCount(done("remove_tag_from_task", R"("taskId": "{}", "tagId": "{}")", task, blue)), 1U);
    EXPECT_EQ(done("delete_tag", R"("tagId": "{}")", red).text, R"({"deleted": true})");
    EXPECT_EQ(tagCount(ofTask("get_task", task)), 0U);
}

TEST_F(MCPToolTest, aSaveThatFailsIsAToolErrorAndChangesNothing) {
    const auto task = add("create_task", R"("title": "Task")");
    foreign.execute("CREATE TRIGGER refuse BEFORE UPDATE ON ProjectTask BEGIN SELECT raise(ABORT, 'not today'); END");
    EXPECT_THAT(faultOf("complete_task", object(R"("taskId": "{}")", task)), testing::HasSubstr("not today"));
    ofTask("get_task", task).expect(R"("isCompleted": false)");
}

} // namespace
} // namespace quillorn
