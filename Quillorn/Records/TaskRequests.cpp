#include "Records/TaskRequests.h"

#include "Records/Validation.h"

namespace quillorn {

namespace {

/// What both requests have.
constexpr std::tuple sharedFields{
    wireField<&TaskFields::description>("description", "The details, as free text."),
    wireField<&TaskFields::dueDate>("dueDate", "When it is due, in whole seconds: 2026-01-20T17:00:00Z."),
    wireField<&TaskFields::priority>(
        "priority",
        {.description = "0 low, 1 medium, 2 high, 3 urgent.", .minimum = 0, .maximum = 3, .defaultValue = "1"}),
    wireField<&TaskFields::status>(
        "status",
        {.description = "With 3 the task is completed from the start. 0 to do, 1 in progress, 2 in review, 3 done.",
         .inUpdate = "3 completes the task, every other state reopens it. 0 to do, 1 in progress, 2 in review, 3 done.",
         .minimum = 0,
         .maximum = 3,
         .defaultValue = "0"}),
    wireField<&TaskFields::projectId>("projectId", {.description = "Its project, which must exist.",
                                                    .inUpdate = "Moves the task to that project, which must exist."}),
    wireField<&TaskFields::tagIds>("tagIds",
                                   {.description = "Its tags. Ids that no tag has are passed over.",
                                    .inUpdate = "Its tags from now on, in place of those that it has: an empty list "
                                                "takes all away. Ids that no tag has are passed over."}),
    wireField<&TaskFields::parentTaskId>("parentTaskId",
                                         "Accepted for the sake of clients that send whole tasks. It changes nothing."),
    wireField<&TaskFields::sourceTitle>(
        "sourceTitle",
        {.description = "A name for the place that the task came from. At most 200 characters.",
         .inUpdate = "A name for the place that the task came from. At most 200 characters. An empty text removes it.",
         .maximumLength = 200}),
    wireField<&TaskFields::sourceURL>(
        "sourceURL", {.description = "A link to that place: an absolute URL of any scheme but `file`, `javascript` and "
                                     "`data`. At most 2048 characters.",
                      .inUpdate = "A link to that place: an absolute URL of any scheme but `file`, `javascript` and "
                                  "`data`. At most 2048 characters. An empty text removes it.",
                      .maximumLength = 2048}),
};

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
    static constexpr auto fields = wireFields<CreateTaskRequest>(
        wireField<&CreateTaskRequest::title>("title", "What is to be done. Must not be blank."), sharedFields);
    static constexpr RecordType type{"CreateTaskRequest", fields};
    return type;
}

std::vector<std::string> CreateTaskRequest::faults() const {
    return faultsOf(*this);
}

const RecordType& UpdateTaskRequest::recordType() {
    static constexpr auto fields = wireFields<UpdateTaskRequest>(
        wireField<&UpdateTaskRequest::title>("title", "What is to be done. Must not be blank."), sharedFields,
        wireField<&UpdateTaskRequest::sortOrder>("sortOrder", "Its place in a list that is ordered by hand."));
    static constexpr RecordType type{"UpdateTaskRequest", fields, RecordUse::update};
    return type;
}

std::vector<std::string> UpdateTaskRequest::faults() const {
    return faultsOf(*this);
}

const RecordType& TaskTagsRequest::recordType() {
    static constexpr auto fields = wireFields<TaskTagsRequest>(
        wireField<&TaskTagsRequest::tagIds>("tagIds", "Ids that no tag has are passed over."));
    static constexpr RecordType type{"TaskTagsRequest", fields};
    return type;
}

} // namespace quillorn
