#include "API/APITest.h"

#include "API/OpenApiDocument.h"
#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/Tag.h"
#include "Support/TestClient.h"

#include <fmt/core.h>

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
                                        .version = "9.8"});
    server->onChange = [this] { loop.stop(); };
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
    Answer result{std::stoi(answer.substr(9)), answer.substr(0, end), answer.substr(end + 4)};
    EXPECT_THAT(OpenApiDocument::shared().faultsOfAnswer(method, target.substr(0, target.find('?')), result.status,
                                                         result.body),
                ::testing::IsEmpty())
        << method << " " << target << "\n"
        << answer.substr(0, 2000);
    return result;
}

std::string APITest::addTag(const std::string& name) {
    return inStore([&](ModelContext& context) { return context.insert<Tag>(Tag::Arguments{name}, clock.now()).id(); })
        .string();
}

std::string APITest::addProject(const std::string& name, bool archived, bool clientArchived) {
    return inStore([&](ModelContext& context) {
               auto& project = context.insert<Project>(Project::Arguments{name}, clock.now());
               project.setArchived(archived);
               auto& client = context.insert<Client>(Client::Arguments{name}, clock.now());
               client.setArchived(clientArchived);
               project.setClient(&client);
               return project.id();
           })
        .string();
}

std::string APITest::add(const std::string& resource, const std::string& body) const {
    const Answer answer = post("/api/" + resource, body);
    EXPECT_EQ(answer.status, 201) << answer.body;
    return *answer["id"].asString();
}

std::vector<std::string> detailsOf(const Answer& answer) {
    std::vector<std::string> details;
    const Json list = answer["details"];
    if (list.asArray() != nullptr)
        for (const Json& detail : *list.asArray())
            details.push_back(*detail.asString());
    return details;
}

std::string code(const Answer& answer) {
    const auto word = [&](const char* key) {
        const Json value = answer[key];
        return value.asString() != nullptr ? *value.asString() : "(none)";
    };
    return fmt::format("{} {} {}", answer.status, word("error"), word("message"));
}

} // namespace quillorn
