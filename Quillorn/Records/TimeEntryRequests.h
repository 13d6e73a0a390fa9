#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

/// What the two requests have in common: all of it.
struct TimeEntryRequest {
    std::optional<Date> startTime{};
    std::optional<Date> endTime{};
    std::optional<std::string> notes{};
    std::optional<UUID> taskId{};
    std::optional<UUID> projectId{};

    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

/// Without a start the entry starts now; without an end it runs.
struct CreateTimeEntryRequest : TimeEntryRequest {
    static const RecordType& recordType();
};

/// An absent field leaves the value alone.
struct UpdateTimeEntryRequest : TimeEntryRequest {
    static const RecordType& recordType();
};

} // namespace quillorn
