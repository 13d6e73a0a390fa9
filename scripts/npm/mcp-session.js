// A coding agent's day with the MCP server, by the client of the protocol's own SDK: node mcp-session.js URL
// Ends with status 1 and the first difference when the server does something else than it should.

import assert from "node:assert/strict";
import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StreamableHTTPClientTransport } from "@modelcontextprotocol/sdk/client/streamableHttp.js";

const url = new URL(process.argv[2]);
const transport = new StreamableHTTPClientTransport(url);
const faults = [];
transport.onerror = (error) => faults.push(error);
const client = new Client({ name: "quillorn-test", version: "1" });

async function call(name, args = {}) {
    const result = await client.callTool({ name, arguments: args });
    assert.equal(result.content.length, 1);
    const text = result.content[0].text;
    assert.ok(!result.isError, `${name}: ${text}`);
    return JSON.parse(text);
}

async function refusal(name, args) {
    const result = await client.callTool({ name, arguments: args });
    assert.equal(result.isError, true, name);
    return result.content[0].text;
}

async function read(uri) {
    const { contents } = await client.readResource({ uri });
    assert.equal(contents[0].uri, uri);
    assert.equal(contents[0].mimeType, "application/json");
    return JSON.parse(contents[0].text);
}

await client.connect(transport);
assert.equal(client.getServerVersion().name, "Quillorn");
assert.match(client.getInstructions(), /^Quillorn is a project management app/);
assert.deepEqual(Object.keys(client.getServerCapabilities()).sort(), ["resources", "tools"]);
assert.match(transport.sessionId, /^[0-9A-F-]{36}$/);
await client.ping();

const { tools } = await client.listTools();
assert.equal(tools.length, 40);
assert.equal(tools[0].name, "list_clients");
assert.equal(tools.at(-1).name, "list_tasks_by_tag");

const acme = await call("create_client", { name: "Acme 🚀", description: "“Quoted”\nand more" });
const site = await call("create_project", { name: "Site", clientId: acme.id });
const launch = await call("create_task", { title: "Launch", projectId: site.id, priority: 2 });
const copy = await call("add_subtask", { parentTaskId: launch.id, title: "Write the copy" });
assert.equal(copy.projectId, site.id);
await call("add_task_comment", { taskId: launch.id, text: "Waits for the texts" });
const tag = await call("create_tag", { name: "web", color: "#34C759" });
assert.equal((await call("add_tags_to_task", { taskId: launch.id, tagIds: [tag.id] })).tags[0].name, "web");

const timer = await call("start_timer", { taskId: copy.id });
assert.equal((await read("quillorn://running-timers")).runningTimers[0].taskTitle, "Write the copy");
assert.equal((await call("complete_task", { taskId: copy.id })).status, 3);
const entries = await call("list_time_entries", { taskId: copy.id });
assert.equal(entries[0].id, timer.id);
assert.equal(entries[0].isRunning, false);
assert.equal((await call("get_task", { taskId: launch.id })).completedSubtaskCount, 1);

assert.equal(await refusal("get_task", { taskId: "x" }), "taskId is required and must be a valid UUID");
assert.equal(await refusal("no_such_tool", {}), "Unknown tool: no_such_tool");
await assert.rejects(client.readResource({ uri: "quillorn://nothing" }), { code: -32002 });

// Many calls at once, over as many connections as the client likes.
const titles = Array.from({ length: 50 }, (_, index) => `Task ${index}`);
const made = await Promise.all(titles.map((title) => call("create_task", { title, projectId: site.id })));
assert.deepEqual(made.map((task) => task.title), titles);
assert.equal((await call("list_tasks", { projectId: site.id })).length, 52);
assert.deepEqual(await call("delete_task", { taskId: made[0].id }), { deleted: true });

const { resources } = await client.listResources();
assert.deepEqual(resources.map(({ uri }) => uri.split("//")[1]),
                 ["overview", "today", "overdue", "running-timers", "pinned-notes"]);
const { resourceTemplates } = await client.listResourceTemplates();
assert.equal(resourceTemplates[0].uriTemplate, "quillorn://project/{projectId}");
for (const { uri } of resources)
    await read(uri);
assert.equal((await read("quillorn://overview")).stats.completedTasks, 1);
assert.equal((await read(`quillorn://project/${site.id}`)).client.name, acme.name);

await transport.terminateSession(); // answered with 405, which clients take for "not needed"
await client.close();
assert.deepEqual(faults, []);
console.log("MCP session passed");
