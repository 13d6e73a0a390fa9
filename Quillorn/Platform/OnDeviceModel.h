#pragma once

#include "Platform/Task.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillorn {

/// A language model on this machine. Belongs to the main thread.
class OnDeviceModel {
  public:
    /// An answer that can be no other than one of several texts.
    struct Choice {
        /// Of the object that is answered, and its one property.
        std::string name;
        std::string property;
        std::string description;
        std::string valueName;
        std::vector<std::string> values;
    };

    virtual ~OnDeviceModel() = default;

    virtual bool isAvailable() const = 0;
    /// In tokens, prompt and answer together; absent where it isn't known.
    virtual std::optional<std::size_t> contextSize() const = 0;
    /// Absent where they can't be counted.
    virtual std::optional<std::size_t> tokenCount(const std::string& text) const = 0;
    /// The value that was chosen; absent for an answer without one. Throws what went wrong.
    virtual Task<std::optional<std::string>> respond(std::string prompt, Choice choice) = 0;
};

} // namespace quillorn
