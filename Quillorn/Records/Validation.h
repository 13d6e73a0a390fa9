#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

/// Gathers what is wrong with a request, in the order of the checks.
class Validation {
  public:
    void require(bool holds, std::string message);

    /// `field` is present and not empty without its blanks, or absent.
    void requireText(const std::optional<std::string>& value, const char* field);
    /// The raw value of an enum with the cases 0 to 3.
    void requireZeroToThree(const std::optional<std::int64_t>& value, const char* field);
    /// The colour of a client or project: whatever starts with "#".
    void requireHash(const std::optional<std::string>& color);
    /// The colour of a tag: "#" and six hexadecimal digits.
    void requireHexColor(const std::optional<std::string>& color);
    /// The label of and the link to the place that a task came from.
    void requireSource(const std::optional<std::string>& title, const std::optional<std::string>& url);

    std::vector<std::string> takeFaults() { return std::move(m_faults); }

  private:
    std::vector<std::string> m_faults;
};

/// The rules of clients and projects, new and changed ones alike.
template <class Request>
std::vector<std::string> nameAndHashFaults(const Request& request) {
    Validation validation;
    validation.requireText(request.name, "name");
    validation.requireHash(request.color);
    return validation.takeFaults();
}

} // namespace quillorn
