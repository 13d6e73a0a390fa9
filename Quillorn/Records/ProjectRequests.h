#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

struct CreateProjectRequest {
    std::string name;
    std::optional<std::string> description{};
    std::optional<std::string> color{};
    std::optional<UUID> clientId{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

/// An absent field leaves the value alone.
struct UpdateProjectRequest {
    std::optional<std::string> name{};
    std::optional<std::string> description{};
    std::optional<std::string> color{};
    std::optional<UUID> clientId{};
    std::optional<bool> isArchived{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

} // namespace quillorn
