#include "API/APITest.h"

#include "Support/TestClient.h"

namespace quillorn {

Json Answer::operator[](const std::string& key) const {
    const Json parsed = json();
    const Json* member = parsed.find(key);
    return member == nullptr ? Json() : *member;
}

std::vector<Json> Answer::all(const std::string& key) const {
    const Json parsed = json();
    std::vector<Json> values;
    for (const Json& element : *parsed.asArray())
        values.push_back(*element.find(key));
    return values;
}

std::string Answer::fault() const {
    const auto word = [&](const char* key) {
        const Json value = (*this)[key];
        return value.asString() != nullptr ? *value.asString() : "(none)";
    };
    return fmt::format("{} {} {}", status, word("error"), word("message"));
}

std::vector<Json> Answer::details() const {
    const Json list = (*this)["details"];
    return list.asArray() != nullptr ? *list.asArray() : Json::Array();
}

APITest::APITest() {
    std::filesystem::create_directories(paths.resources());
    serve(*store.container);
}

void APITest::serve(ModelContainer& container) {
    server.emplace(APIServerEnvironment{.container = container,
                                        .clock = clock,
                                        .text = text,
                                        .paths = paths,
                                        .log = log,
                                        .mainQueue = loop,
                                        .background = background,
                                        .version = "9.8"});
    serverState = server->observe([this] { loop.stop(); });
}

void APITest::start(bool externalAccess, std::optional<std::string> key, bool requireAuthLocal) {
    server->start(0, externalAccess, std::move(key), requireAuthLocal);
    runUntil([&] { return server->isRunning() || !server->hasServer(); });
    ASSERT_TRUE(server->isRunning()) << server->lastError().value_or("");
}

Answer APITest::call(const std::string& method, const std::string& target, const std::string& body,
                     const std::string& headers) const {
    const std::string length = body.empty() ? "" : fmt::format("Content-Length: {}\r\n", body.size());
    const std::string answer =
        answerTo(server->port(), fmt::format("{} {} HTTP/1.1\r\n{}{}\r\n{}", method, target, headers, length, body));
    const auto end = answer.find("\r\n\r\n");
    if (end == std::string::npos || !answer.starts_with("HTTP/1.1 ")) {
        ADD_FAILURE() << method << " " << target << " was answered by: " << answer;
        return {};
    }
    return {std::stoi(answer.substr(9)), answer.substr(0, end), answer.substr(end + 4)};
}

std::string APITest::add(const std::string& resource, const std::string& body) const {
    const Answer answer = post("/api/" + resource, body);
    EXPECT_EQ(answer.status, 201) << answer.body;
    return *answer["id"].asString();
}

std::string APITest::addProject(const std::string& name, bool archived, bool clientArchived) const {
    const std::string client = addClient(name);
    const std::string project = addProjectOf(client, name);
    if (archived)
        archive("/api/projects/" + project);
    if (clientArchived)
        archive("/api/clients/" + client);
    return project;
}

void APITest::makeSubtask(const std::string& task, const std::string& parent) const {
    change(*store.container, [&](ModelContext& context) {
        const auto find = [&](const std::string& id) { return context.find<ProjectTask>(*UUID::parse(id)); };
        find(task)->setParentTask(find(parent));
    });
}

std::string APITest::everything() const {
    std::string bodies;
    for (const std::string resource : {"clients", "projects", "tasks", "tags", "time-entries", "notes"})
        bodies += get("/api/" + resource + "?archived=1").body;
    return bodies;
}

void APITest::expectLists(const std::string& path, const char* key, const Lists& cases) const {
    for (const auto& [queries, values] : cases)
        for (const std::string& query : queries)
            EXPECT_THAT(get(path + query).all(key), ElementsAreArray(values.begin(), values.end())) << path << query;
}

} // namespace quillorn
