#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

/// What requests to create and to change tasks have in common.
struct TaskFields {
    std::optional<std::string> description{};
    std::optional<Date> dueDate{};
    std::optional<std::int64_t> priority{};
    std::optional<std::int64_t> status{};
    std::optional<UUID> projectId{};
    std::optional<std::vector<UUID>> tagIds{};
    /// Read, and without effect.
    std::optional<UUID> parentTaskId{};
    std::optional<std::string> sourceTitle{};
    std::optional<std::string> sourceURL{};
};

struct CreateTaskRequest : TaskFields {
    std::string title;

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

/// An absent field leaves the value alone.
struct UpdateTaskRequest : TaskFields {
    std::optional<std::string> title{};
    std::optional<std::int64_t> sortOrder{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

struct TaskTagsRequest {
    std::vector<UUID> tagIds{};

    static const RecordType& recordType();
};

} // namespace quillorn
