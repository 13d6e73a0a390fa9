#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

struct CreateTagRequest {
    std::string name;
    std::optional<std::string> color{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

/// An absent field leaves the value alone.
struct UpdateTagRequest {
    std::optional<std::string> name{};
    std::optional<std::string> color{};

    static const RecordType& recordType();
    /// What is wrong with it, in words for the client.
    std::vector<std::string> faults() const;
};

} // namespace quillorn
