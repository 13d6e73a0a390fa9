#include "API/OpenApiDocument.h"

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

namespace quillorn {
namespace {

const OpenApiDocument& document() {
    return OpenApiDocument::shared();
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
    std::ranges::sort(served);
    EXPECT_EQ(served, document().operations());
}

void checkSchemaOf(const RecordType& record) {
    const Json& schema = document().schema(std::string(record.name));
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

/// Checks every example that stands beside a schema or in one.
void checkExamples(const Json& node, const std::string& place) {
    const auto check = [&](const Json& example, const Json& schema) {
        EXPECT_THAT(document().faultsOf(example, schema), IsEmpty()) << place;
    };
    const Json* schema = node.find("schema");
    const Json* examples = node.find("examples");
    if (const Json* example = node.find("example"); schema != nullptr && example != nullptr)
        check(*example, *schema);
    if (examples != nullptr && schema != nullptr)
        for (const auto& [name, example] : *examples->asObject())
            check(*example.find("value"), *schema);
    else if (examples != nullptr && examples->asArray() != nullptr)
        for (const Json& example : *examples->asArray())
            check(example, node);
    if (node.asObject() != nullptr)
        for (const auto& [key, child] : *node.asObject())
            checkExamples(child, place + "/" + key);
    if (node.asArray() != nullptr)
        for (const Json& child : *node.asArray())
            checkExamples(child, place + "[]");
}

TEST(OpenApiTest, examplesFollowTheirSchemas) {
    checkExamples(document().root(), "");
}

TEST(OpenApiTest, operationsHaveUniqueNamesAndWords) {
    std::vector<std::string> names;
    for (const auto& [path, item] : *document().root().find("paths")->asObject())
        for (const auto& [method, operation] : *item.asObject()) {
            if (method == "parameters")
                continue;
            for (const char* key : {"operationId", "summary", "description"})
                ASSERT_NE(operation.find(key), nullptr) << method << " " << path << " lacks " << key;
            names.push_back(*operation.find("operationId")->asString());
        }
    std::ranges::sort(names);
    EXPECT_EQ(std::ranges::adjacent_find(names), names.end());
}

} // namespace
} // namespace quillorn
