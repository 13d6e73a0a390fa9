#include "API/APIError.h"
#include "Platform/Json.h"
#include "Records/ClientDTO.h"
#include "Records/ClientRequests.h"
#include "Records/NoteDTO.h"
#include "Records/NoteRequests.h"
#include "Records/ProjectDTO.h"
#include "Records/ProjectRequests.h"
#include "Records/RecordSchema.h"
#include "Records/TagRequests.h"
#include "Records/TaskDTO.h"
#include "Records/TaskRequests.h"
#include "Records/TimeEntryDTO.h"
#include "Records/TimeEntryRequests.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <regex>

namespace quillorn {
namespace {

const std::filesystem::path documentPath = QUILLORN_RESOURCES "/openapi.json";

/// The lines of openapi.json that come from the record, indented as they stand there.
std::string linesOf(const RecordType& type) {
    const std::string object = jsonText([&](JsonWriter& writer) { writeSchema(writer, type); });
    return std::regex_replace(object.substr(2, object.size() - 4), std::regex("(^|\n)"), "$1      ");
}

/// Where those lines are in the document: from "properties" to the end of "required", if that is there.
std::pair<std::size_t, std::size_t> placeOf(const std::string& document, const RecordType& type) {
    const auto schemas = document.find("\n    \"schemas\": {");
    const auto schema = document.find("\n      \"" + std::string(type.name) + "\": {", schemas);
    const auto begin = document.find("        \"properties\": {", schema);
    auto end = document.find("\n        }", begin);
    if (end == std::string::npos || schema == std::string::npos)
        throw std::runtime_error("openapi.json has no properties of " + std::string(type.name));
    end += std::string_view("\n        }").size();
    if (std::string_view(document).substr(end).starts_with(",\n        \"required\": "))
        end = document.find(']', end) + 1;
    return {begin, end - begin};
}

// QUILLORN_RENEW=1 puts what the records say into openapi.json.
TEST(OpenApiSchemas, areThoseOfTheRecords) {
    const bool renew = std::getenv("QUILLORN_RENEW") != nullptr; // NOLINT(concurrency-mt-unsafe)
    std::string document = readFile(documentPath);
    for (const RecordType& (*record)() : {ClientDTO::recordType,
                                          ProjectDTO::recordType,
                                          TaskDTO::recordType,
                                          TagDTO::recordType,
                                          TimeEntryDTO::recordType,
                                          NoteDTO::recordType,
                                          CreateClientRequest::recordType,
                                          UpdateClientRequest::recordType,
                                          CreateProjectRequest::recordType,
                                          UpdateProjectRequest::recordType,
                                          CreateTaskRequest::recordType,
                                          UpdateTaskRequest::recordType,
                                          TaskTagsRequest::recordType,
                                          CreateTagRequest::recordType,
                                          UpdateTagRequest::recordType,
                                          CreateTimeEntryRequest::recordType,
                                          UpdateTimeEntryRequest::recordType,
                                          CreateNoteRequest::recordType,
                                          UpdateNoteRequest::recordType,
                                          APIErrorResponse::recordType}) {
        const auto [begin, length] = placeOf(document, record());
        if (renew)
            document.replace(begin, length, linesOf(record()));
        else
            EXPECT_EQ(document.substr(begin, length), linesOf(record())) << record().name;
    }
    if (renew)
        writeFile(documentPath, document);
}

} // namespace
} // namespace quillorn
