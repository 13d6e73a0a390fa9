// A small MCP server on the protocol's own SDK, over a copy of a store: node server.js STORE CATALOGUE
//
// It is made to be quick: the low-level interface, which checks no schemas, without sessions and streams, one statement
// for a record, the catalogue (a file with the answer of tools/list) read once. Only the tools that are measured work.
// Prints its port when it listens.

import { readFileSync } from "node:fs";
import { createServer } from "node:http";
import { Server } from "@modelcontextprotocol/sdk/server/index.js";
import { StreamableHTTPServerTransport } from "@modelcontextprotocol/sdk/server/streamableHttp.js";
import { CallToolRequestSchema, ListToolsRequestSchema } from "@modelcontextprotocol/sdk/types.js";
import Database from "better-sqlite3";

const [store, catalogue] = process.argv.slice(2);
const { tools } = JSON.parse(readFileSync(catalogue)).result;
const database = new Database(store);
database.pragma("journal_mode = WAL");
database.pragma("synchronous = FULL");

const find = database.prepare(`
    SELECT hex(t.id) AS id, t.title, t.taskDescription AS description, t.dueDate, t.completedAt, t.priority, t.status,
        t.sortOrder, t.createdAt, t.updatedAt, hex(p.id) AS projectId, hex(parent.id) AS parentTaskId,
        (SELECT json_group_array(json_object('id', hex(g.id), 'name', g.name, 'color', g.color, 'createdAt', g.createdAt,
            'updatedAt', g.updatedAt, 'taskCount', (SELECT count(*) FROM ProjectTask_Tag WHERE tag = g.key)))
            FROM ProjectTask_Tag JOIN Tag g ON g.key = tag WHERE task = t.key) AS tags,
        (SELECT sum(ifnull(endTime, @now) - startTime) FROM TimeEntry WHERE task = t.key) / 1e6 AS totalTimeSpent,
        (SELECT count(*) FROM ProjectTask WHERE parentTask = t.key) AS subtaskCount,
        (SELECT count(completedAt) FROM ProjectTask WHERE parentTask = t.key) AS completedSubtaskCount
    FROM ProjectTask t LEFT JOIN Project p ON p.key = t.project LEFT JOIN ProjectTask parent ON parent.key = t.parentTask
    WHERE t.id = @id`);
const update = database.prepare("UPDATE ProjectTask SET title = ifnull(@title, title), updatedAt = @now WHERE id = @id");

const text = (value) => ({ content: [{ type: "text", text: value }], isError: false });
const date = (microseconds) => microseconds === null ? undefined : new Date(microseconds / 1000).toISOString();

function task(id) {
    const row = find.get({ id, now: Date.now() * 1000 });
    const record = { ...row, tags: JSON.parse(row.tags), isCompleted: row.completedAt !== null };
    for (const key of ["dueDate", "completedAt", "createdAt", "updatedAt"])
        record[key] = date(row[key]);
    return text(JSON.stringify(record, null, 2));
}

function call(name, args) {
    const id = Buffer.from(args.taskId.replaceAll("-", ""), "hex");
    if (name === "update_task")
        update.run({ id, title: args.title ?? null, now: Date.now() * 1000 });
    return task(id);
}

function makeServer() {
    const server = new Server({ name: "peer", version: "1" }, { capabilities: { tools: {} } });
    server.setRequestHandler(ListToolsRequestSchema, () => ({ tools }));
    server.setRequestHandler(CallToolRequestSchema, ({ params }) => call(params.name, params.arguments));
    return server;
}

// A server and a transport for each request: what the SDK asks for without sessions.
const http = createServer(async (request, response) => {
    const chunks = [];
    for await (const chunk of request)
        chunks.push(chunk);
    const transport = new StreamableHTTPServerTransport({ sessionIdGenerator: undefined, enableJsonResponse: true });
    const server = makeServer();
    await server.connect(transport);
    await transport.handleRequest(request, response, JSON.parse(Buffer.concat(chunks)));
    response.on("close", () => server.close());
});
http.listen(0, "127.0.0.1", () => console.log(http.address().port));
