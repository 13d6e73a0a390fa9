#include "Crash/Rest.h"

#include "Integration/ServerProcess.h"
#include "Support/TestClient.h"

#include <set>
#include <stdexcept>

namespace quillorn {

namespace {

struct Kind {
    const char* path;
    const char* name; // the field that begins with the key
};

const std::map<std::string, Kind, std::less<>> kinds{
    {"project", {"/api/projects", "name"}},
    {"tag", {"/api/tags", "name"}},
    {"task", {"/api/tasks", "title"}},
    {"note", {"/api/notes", "title"}},
    {"time_entry", {"/api/time-entries", "notes"}},
};

std::string text(const Json& record, std::string_view field) {
    const Json* value = record.find(field);
    return value != nullptr && value->asString() != nullptr ? *value->asString() : std::string();
}

std::string textOf(const WriteRequest& request) {
    std::string path = kinds.at(request.kind).path;
    if (request.verb != "create")
        path += "/" + request.id;
    std::string method = "POST";
    if (request.verb == "update")
        method = "PUT";
    else if (request.verb == "delete")
        method = "DELETE";
    else if (request.verb != "create")
        path += "/" + request.verb;
    return requestText(method, path, request.fields.empty() ? "" : Json(request.fields).text());
}

std::string idIn(const std::string& answer) {
    try {
        return text(Json::parse(bodyOf(answer)), "id");
    } catch (const JsonError&) {
        return {};
    }
}

/// A task's tags as the sorted ids that a request names them by.
Json comparable(const Json& record) {
    Json::Object fields = *record.asObject();
    if (const auto tags = fields.find("tags"); tags != fields.end()) {
        std::set<std::string> ids;
        for (const Json& tag : *tags->second.asArray())
            ids.insert(text(tag, "id"));
        fields["tagIds"] = Json::Array(ids.begin(), ids.end());
    }
    return fields;
}

} // namespace

Answer send(std::uint16_t port, const WriteRequest& request) {
    std::string answer;
    try {
        answer = answerTo(port, textOf(request));
    } catch (const std::runtime_error&) {
        // no connection
    }
    // The first line is the promise, even if the rest does not arrive.
    if (!answer.starts_with("HTTP/1.1 2"))
        return {.kind = answer.starts_with("HTTP/1.1 ") ? Answer::Kind::refused : Answer::Kind::cutOff, .text = answer};
    return {.kind = Answer::Kind::acknowledged, .id = idIn(answer), .text = answer};
}

ListedRecords listEverything(std::uint16_t port) {
    ListedRecords listed;
    for (const auto& [kind, properties] : kinds) {
        const Json list = Json::parse(bodyOf(answerTo(port, requestText("GET", properties.path))));
        for (const Json& record : *list.asArray()) {
            const std::string name = text(record, properties.name), key = name.substr(0, name.find(' '));
            if (!listed.emplace(key, comparable(record)).second)
                throw std::runtime_error(key + " is there twice");
        }
    }
    return listed;
}

} // namespace quillorn
