#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

/// What requests to create and to change projects have in common.
struct ProjectFields {
    std::optional<std::string> description{};
    std::optional<std::string> color{};
    std::optional<UUID> clientId{};
};

struct CreateProjectRequest : ProjectFields {
    std::string name;

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

/// An absent field leaves the value alone.
struct UpdateProjectRequest : ProjectFields {
    std::optional<std::string> name{};
    std::optional<bool> isArchived{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

} // namespace quillorn
