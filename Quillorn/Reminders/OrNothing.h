#pragma once

#include <exception>

namespace quillorn {

/// What is not there counts as nothing.
template <typename Read>
auto orNothing(const Read& read) -> decltype(read()) {
    try {
        return read();
    } catch (const std::exception&) {
        return {};
    }
}

} // namespace quillorn
