#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

/// What requests to create and to change clients have in common.
struct ClientFields {
    std::optional<std::string> description{};
    std::optional<std::string> color{};
    std::optional<std::string> icon{};
};

struct CreateClientRequest : ClientFields {
    std::string name;

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

/// An absent field leaves the value alone.
struct UpdateClientRequest : ClientFields {
    std::optional<std::string> name{};
    std::optional<bool> isArchived{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

} // namespace quillorn
