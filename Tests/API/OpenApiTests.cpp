#include "API/APIError.h"
#include "API/APITest.h"
#include "API/Routes.h"
#include "Records/ClientDTO.h"
#include "Records/ClientRequests.h"
#include "Records/NoteDTO.h"
#include "Records/NoteRequests.h"
#include "Records/ProjectDTO.h"
#include "Records/ProjectRequests.h"
#include "Records/TagRequests.h"
#include "Records/TaskDTO.h"
#include "Records/TaskRequests.h"
#include "Records/TimeEntryDTO.h"
#include "Records/TimeEntryRequests.h"

#include <algorithm>
#include <regex>

namespace quillorn {
namespace {

const Json& document() {
    static const Json json = Json::parse(readFile(QUILLORN_RESOURCES "/openapi.json"));
    return json;
}

/// The form of a field, as a schema without its words.
Json schemaOf(const WireShape& shape) {
    if (shape.record != nullptr)
        return Json::Object{{"$ref", "#/components/schemas/" + std::string(shape.record().name)}};
    Json::Object schema{{"type", shape.type}};
    if (!shape.format.empty())
        schema["format"] = shape.format;
    if (shape.items != nullptr)
        schema["items"] = schemaOf(*shape.items);
    return schema;
}

Json withoutWords(const Json& schema) {
    Json::Object bare;
    for (const auto& [key, value] : *schema.asObject())
        if (key == "type" || key == "format" || key == "$ref" || key == "items")
            bare[key] = value;
    return bare;
}

TEST_F(APITest, openApiDescribesExactlyTheRoutesThatAreServed) {
    std::vector<std::string> served;
    ListCache lists(*store.container);
    for (const auto& routes : {apiRoutes(*store.container, clock, text, paths, lists), mcpRoutes({})})
        for (const Route& route : routes)
            served.push_back(route.method + " " + route.path);
    std::vector<std::string> described;
    for (const auto& [path, item] : *document().find("paths")->asObject())
        for (const auto& [method, operation] : *item.asObject())
            if (std::string name = method; method != "parameters") {
                std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::toupper(c); });
                described.push_back(name + " " + std::regex_replace(path, std::regex(R"(\{(\w+)\})"), ":$1"));
            }
    EXPECT_THAT(described, testing::UnorderedElementsAreArray(served));
}

void checkSchemaOf(const RecordType& record) {
    const Json& schema = *document().find("components")->find("schemas")->find(record.name);
    Json::Object properties;
    Json::Object described;
    Json::Array required;
    Json::Array names;
    for (const WireField& field : record.fields) {
        properties.emplace(field.name, schemaOf(*field.shape));
        if (field.required)
            required.emplace_back(field.name);
    }
    for (const auto& [name, property] : *schema.find("properties")->asObject())
        described.emplace(name, withoutWords(property));
    EXPECT_EQ(described, properties) << record.name;
    if (const Json* list = schema.find("required"))
        names = *list->asArray();
    EXPECT_THAT(names, testing::UnorderedElementsAreArray(required)) << record.name;
}

template <class... Records>
void checkSchemas() {
    (checkSchemaOf(Records::recordType()), ...);
}

TEST(OpenApiTest, schemasHaveTheFieldsOfTheirRecords) {
    checkSchemas<ClientDTO, ProjectDTO, TaskDTO, TagDTO, TimeEntryDTO, NoteDTO, APIErrorResponse>();
    checkSchemas<CreateClientRequest, CreateProjectRequest, CreateTaskRequest, CreateTagRequest, CreateTimeEntryRequest,
                 CreateNoteRequest, TaskTagsRequest>();
    checkSchemas<UpdateClientRequest, UpdateProjectRequest, UpdateTaskRequest, UpdateTagRequest, UpdateTimeEntryRequest,
                 UpdateNoteRequest>();
}

} // namespace
} // namespace quillorn
