#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

struct CreateClientRequest {
    std::string name;
    std::optional<std::string> description{};
    std::optional<std::string> color{};
    std::optional<std::string> icon{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

/// An absent field leaves the value alone.
struct UpdateClientRequest {
    std::optional<std::string> name{};
    std::optional<std::string> description{};
    std::optional<std::string> color{};
    std::optional<std::string> icon{};
    std::optional<bool> isArchived{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

} // namespace quillorn
