#include "Records/TimeEntryRequests.h"

#include "Records/Validation.h"

namespace quillorn {

namespace {

constexpr auto fields = wireFields({
    wireField<&TimeEntryRequest::startTime>("startTime"),
    wireField<&TimeEntryRequest::endTime>("endTime"),
    wireField<&TimeEntryRequest::notes>("notes"),
    wireField<&TimeEntryRequest::taskId>("taskId"),
    wireField<&TimeEntryRequest::projectId>("projectId"),
});

// Fields are reached by the address of the whole record.
static_assert(sizeof(CreateTimeEntryRequest) == sizeof(TimeEntryRequest));
static_assert(sizeof(UpdateTimeEntryRequest) == sizeof(TimeEntryRequest));

} // namespace

std::vector<std::string> TimeEntryRequest::faults() const {
    Validation validation;
    validation.require(!startTime || !endTime || *endTime >= *startTime, "endTime must be after startTime");
    return validation.takeFaults();
}

const RecordType& CreateTimeEntryRequest::recordType() {
    static constexpr RecordType type{"CreateTimeEntryRequest", fields};
    return type;
}

const RecordType& UpdateTimeEntryRequest::recordType() {
    static constexpr RecordType type{"UpdateTimeEntryRequest", fields};
    return type;
}

} // namespace quillorn
