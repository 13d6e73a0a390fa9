#include "API/OpenApiDocument.h"
#include "Fuzz/ApiCaller.h"
#include "Fuzz/Harness.h"
#include "Fuzz/Lines.h"
#include "Fuzz/Values.h"

using namespace quillorn;

namespace {

/// The one for all inputs: it takes longer to make than to use.
FuzzStore& store() {
    static FuzzStore store;
    return store;
}

const Json& resolve(const Json& schema) {
    return OpenApiDocument::shared().resolve(schema);
}

/// A line: method, target and, where there is one, the body; a blank between each.
struct Message {
    std::string method;
    std::string target;
    std::string body;

    static Message read(const std::string& line) {
        const std::size_t first = std::min(line.find(' '), line.size());
        const std::size_t second = std::min(line.find(' ', first + 1), line.size());
        return {line.substr(0, first), line.substr(std::min(first + 1, line.size()), second - first - 1),
                line.substr(std::min(second + 1, line.size()))};
    }
    std::string line() const { return method + ' ' + target + (body.empty() ? "" : ' ' + body); }
};

/// What openapi.json tells of an operation.
struct Operation {
    std::string method;
    std::string path;
    std::vector<std::string> queryNames;
    /// Null where it takes no body.
    const Json* body = nullptr;

    bool takes(const Message& message) const {
        const std::string called = message.target.substr(0, message.target.find('?'));
        return method == message.method && std::ranges::count(path, '/') == std::ranges::count(called, '/') &&
               called.starts_with(path.substr(0, path.find('{'))) &&
               called.ends_with(path.substr(path.rfind('}') == std::string::npos ? 0 : path.rfind('}') + 1));
    }
};

Operation operationOf(const std::string& method, const std::string& path, const Json& description) {
    Operation operation{.method = method, .path = path, .queryNames = {}};
    for (char& letter : operation.method)
        letter = static_cast<char>(letter - 'a' + 'A');
    if (const Json* parameters = description.find("parameters"))
        for (const Json& parameter : *parameters->asArray())
            if (const Json& resolved = resolve(parameter); *resolved.find("in") == Json("query"))
                operation.queryNames.push_back(*resolved.find("name")->asString());
    if (const Json* body = description.find("requestBody"))
        operation.body = resolve(*body).find("content")->find("application/json")->find("schema");
    return operation;
}

const std::vector<Operation>& allOperations() {
    static const std::vector<Operation> operations = [] {
        std::vector<Operation> made;
        for (const auto& [path, item] : *OpenApiDocument::shared().root().find("paths")->asObject())
            for (const auto& [method, description] : *item.asObject())
                if (method != "parameters" && path != "/mcp")
                    made.push_back(operationOf(method, path, description));
        return made;
    }();
    return operations;
}

std::string queryOf(const Operation& operation, Values& values, Dice& dice) {
    std::string query;
    for (const std::string& name : operation.queryNames)
        if (dice.chance(30)) {
            constexpr const char* words[] = {"true", "0", "1", "2", "no", "-9223372036854775808", "%20", "+1"};
            const std::string value = dice.chance(40)   ? values.id(name)
                                      : dice.chance(50) ? words[dice.below(std::size(words))]
                                                        : values.text();
            query += (query.empty() ? '?' : '&') + name + '=' + value;
        }
    // Neither can stand in a target.
    std::erase(query, ' ');
    std::erase(query, '\n');
    return query;
}

std::string bodyOf(const Operation& operation, Values& values) {
    try {
        return operation.body != nullptr ? Json(values.object(*operation.body)).text() : "";
    } catch (const JsonError&) {
        return "{}"; // there is no JSON for some texts
    }
}

std::string callOf(const Operation& operation, Dice& dice) {
    Values values(dice, store().ids(), resolve);
    Message message{.method = operation.method, .target = operation.path, .body = bodyOf(operation, values)};
    for (auto at = message.target.find('{'); at != std::string::npos; at = message.target.find('{')) {
        std::string id = values.id(message.target.substr(0, at));
        if (id.find_first_of("{ \n") != std::string::npos)
            id.clear();
        message.target.replace(at, message.target.find('}') - at + 1, id);
    }
    message.target += queryOf(operation, values, dice);
    return message.line();
}

std::string makeCall(Dice& dice) {
    const auto& operations = allOperations();
    return callOf(operations[dice.below(operations.size())], dice);
}

/// The same call with another member of the body or another query.
std::string changeCall(const std::string& line, Dice& dice) {
    Message message = Message::read(line);
    const auto& operations = allOperations();
    const auto operation = std::ranges::find_if(operations, [&](const Operation& each) { return each.takes(message); });
    if (operation == operations.end())
        return makeCall(dice);
    Values values(dice, store().ids(), resolve);
    if (operation->body == nullptr || dice.chance(10)) {
        message.target = message.target.substr(0, message.target.find('?')) + queryOf(*operation, values, dice);
        return message.line();
    }
    try {
        const Json body = Json::parse(message.body);
        if (body.asObject() == nullptr)
            return callOf(*operation, dice);
        Json::Object changed = *body.asObject();
        values.change(changed, *operation->body);
        message.body = Json(changed).text();
    } catch (const JsonError&) {
        message.body = mutated(message.body, message.body.size() + 16);
    }
    return message.line();
}

} // namespace

std::vector<std::string> quillorn::seeds() {
    Dice dice(1);
    std::vector<std::string> seeds;
    for (const Operation& operation : allOperations())
        seeds.push_back(callOf(operation, dice) + '\n' + makeCall(dice) + '\n');
    return seeds;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t limit, unsigned seed) {
    return mutateLines(data, size, limit, seed, {makeCall, changeCall});
}

/// Each line is a call. Every answer is described, none tells of a fault of the server's, and what is refused or only
/// reads changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ApiCaller caller(store().container());
    store().feed(linesOf(bytesOf(data, size)), [](const std::string& line) {
        const Message message = Message::read(line);
        const auto status = caller.call(message.method, message.target, message.body);
        return status && *status < 300 && message.method != "GET";
    });
    return 0;
}
