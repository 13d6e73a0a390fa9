#include "Records/TimeEntryRequests.h"

#include "Records/Validation.h"

namespace quillorn {

namespace {

/// What both requests have.
constexpr std::tuple sharedFields{
    wireField<&TimeEntryRequest::startTime>(
        "startTime", {.description = "When it began, in whole seconds: 2026-01-14T15:20:00Z. Now, unless given.",
                      .inUpdate = "When it began, in whole seconds: 2026-01-14T15:20:00Z."}),
    wireField<&TimeEntryRequest::endTime>(
        "endTime",
        {.description = "When it ended; not before `startTime`, where both are given. Without it the entry runs.",
         .inUpdate = "When it ended; not before `startTime`, where both are given. A running entry stops."}),
    wireField<&TimeEntryRequest::notes>("notes", "What was done."),
    wireField<&TimeEntryRequest::taskId>("taskId", "The task that was worked on, which must exist."),
    wireField<&TimeEntryRequest::projectId>("projectId", "The project, for time without a task. It must exist."),
};

} // namespace

std::vector<std::string> TimeEntryRequest::faults() const {
    Validation validation;
    validation.require(!startTime || !endTime || *endTime >= *startTime, "endTime must be after startTime");
    return validation.takeFaults();
}

const RecordType& CreateTimeEntryRequest::recordType() {
    static constexpr auto fields = wireFields<CreateTimeEntryRequest>(sharedFields);
    static constexpr RecordType type{"CreateTimeEntryRequest", fields};
    return type;
}

const RecordType& UpdateTimeEntryRequest::recordType() {
    static constexpr auto fields = wireFields<UpdateTimeEntryRequest>(sharedFields);
    static constexpr RecordType type{"UpdateTimeEntryRequest", fields, RecordUse::update};
    return type;
}

} // namespace quillorn
