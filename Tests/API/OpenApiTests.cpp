#include "API/OpenApiDocument.h"

#include "API/APIError.h"
#include "API/APITest.h"
#include "API/ClientDTO.h"
#include "API/ClientRequests.h"
#include "API/NoteDTO.h"
#include "API/NoteRequests.h"
#include "API/ProjectDTO.h"
#include "API/ProjectRequests.h"
#include "API/Routes.h"
#include "API/TagRequests.h"
#include "API/TaskDTO.h"
#include "API/TaskRequests.h"
#include "API/TimeEntryDTO.h"
#include "API/TimeEntryRequests.h"

#include <algorithm>

namespace quillorn {
namespace {

using ::testing::IsEmpty;

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
    for (const Route& route : apiRoutes(*store.container, clock, text, paths, lists))
        served.push_back(route.method + " " + route.path);
    for (const Route& route : mcpRoutes({}))
        served.push_back(route.method + " " + route.path);
    std::ranges::sort(served);
    EXPECT_EQ(served, document().operations());
}

TEST(OpenApiTest, schemasHaveTheFieldsOfTheirRecords) {
    const RecordType* records[] = {&ClientDTO::recordType(),
                                   &ProjectDTO::recordType(),
                                   &TaskDTO::recordType(),
                                   &TagDTO::recordType(),
                                   &TimeEntryDTO::recordType(),
                                   &NoteDTO::recordType(),
                                   &CreateClientRequest::recordType(),
                                   &UpdateClientRequest::recordType(),
                                   &CreateProjectRequest::recordType(),
                                   &UpdateProjectRequest::recordType(),
                                   &CreateTaskRequest::recordType(),
                                   &UpdateTaskRequest::recordType(),
                                   &TaskTagsRequest::recordType(),
                                   &CreateTagRequest::recordType(),
                                   &UpdateTagRequest::recordType(),
                                   &CreateTimeEntryRequest::recordType(),
                                   &UpdateTimeEntryRequest::recordType(),
                                   &CreateNoteRequest::recordType(),
                                   &UpdateNoteRequest::recordType(),
                                   &APIErrorResponse::recordType()};
    for (const RecordType* record : records) {
        SCOPED_TRACE(record->name);
        const Json& schema = document().schema(std::string(record->name));
        Json::Object properties;
        std::vector<Json> required;
        for (const WireField& field : record->fields) {
            properties.emplace(field.name, schemaOf(*field.shape));
            if (field.required)
                required.emplace_back(field.name);
        }
        Json::Object described;
        for (const auto& [name, property] : *schema.find("properties")->asObject())
            described.emplace(name, withoutWords(property));
        EXPECT_EQ(described, properties);
        Json::Array names = schema.find("required") != nullptr ? *schema.find("required")->asArray() : Json::Array();
        std::ranges::sort(names, {}, [](const Json& name) { return *name.asString(); });
        EXPECT_EQ(names, required);
    }
}

/// Checks every example that stands beside a schema.
void checkExamples(const Json& node, const std::string& place) {
    if (const Json* schema = node.find("schema")) {
        if (const Json* example = node.find("example")) {
            EXPECT_THAT(document().faultsOf(*example, *schema), IsEmpty()) << place;
        }
        if (const Json* examples = node.find("examples")) {
            for (const auto& [name, example] : *examples->asObject())
                EXPECT_THAT(document().faultsOf(*example.find("value"), *schema), IsEmpty()) << place << " " << name;
        }
    }
    if (const Json::Array* examples = node.find("examples") ? node.find("examples")->asArray() : nullptr) {
        for (const Json& example : *examples)
            EXPECT_THAT(document().faultsOf(example, node), IsEmpty()) << place;
    }
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
