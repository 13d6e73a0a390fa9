#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

/// What requests to create and to change tags have in common.
struct TagFields {
    std::optional<std::string> color{};
};

struct CreateTagRequest : TagFields {
    std::string name;

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

/// An absent field leaves the value alone.
struct UpdateTagRequest : TagFields {
    std::optional<std::string> name{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

} // namespace quillorn
