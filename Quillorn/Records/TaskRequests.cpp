#include "Records/TaskRequests.h"

#include "Records/Validation.h"

namespace quillorn {

namespace {

template <class Request>
std::vector<std::string> faultsOf(const Request& request) {
    Validation validation;
    validation.requireSource(request.sourceTitle, request.sourceURL);
    validation.requireText(request.title, "title");
    validation.requireZeroToThree(request.priority, "priority");
    validation.requireZeroToThree(request.status, "status");
    return validation.takeFaults();
}

} // namespace

const RecordType& CreateTaskRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&CreateTaskRequest::title>("title"),
        wireField<&CreateTaskRequest::description>("description"),
        wireField<&CreateTaskRequest::dueDate>("dueDate"),
        wireField<&CreateTaskRequest::priority>("priority"),
        wireField<&CreateTaskRequest::status>("status"),
        wireField<&CreateTaskRequest::projectId>("projectId"),
        wireField<&CreateTaskRequest::tagIds>("tagIds"),
        wireField<&CreateTaskRequest::parentTaskId>("parentTaskId"),
        wireField<&CreateTaskRequest::sourceTitle>("sourceTitle"),
        wireField<&CreateTaskRequest::sourceURL>("sourceURL"),
    });
    static constexpr RecordType type{"CreateTaskRequest", fields};
    return type;
}

std::vector<std::string> CreateTaskRequest::faults() const {
    return faultsOf(*this);
}

const RecordType& UpdateTaskRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&UpdateTaskRequest::title>("title"),
        wireField<&UpdateTaskRequest::description>("description"),
        wireField<&UpdateTaskRequest::dueDate>("dueDate"),
        wireField<&UpdateTaskRequest::priority>("priority"),
        wireField<&UpdateTaskRequest::status>("status"),
        wireField<&UpdateTaskRequest::sortOrder>("sortOrder"),
        wireField<&UpdateTaskRequest::projectId>("projectId"),
        wireField<&UpdateTaskRequest::tagIds>("tagIds"),
        wireField<&UpdateTaskRequest::parentTaskId>("parentTaskId"),
        wireField<&UpdateTaskRequest::sourceTitle>("sourceTitle"),
        wireField<&UpdateTaskRequest::sourceURL>("sourceURL"),
    });
    static constexpr RecordType type{"UpdateTaskRequest", fields};
    return type;
}

std::vector<std::string> UpdateTaskRequest::faults() const {
    return faultsOf(*this);
}

const RecordType& TaskTagsRequest::recordType() {
    static constexpr auto fields = wireFields({wireField<&TaskTagsRequest::tagIds>("tagIds")});
    static constexpr RecordType type{"TaskTagsRequest", fields};
    return type;
}

} // namespace quillorn
