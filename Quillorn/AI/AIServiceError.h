#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace quillorn {

/// What an AI service did not do, or what keeps us from asking it; what() is for the user.
class AIServiceError final : public std::runtime_error {
  public:
    enum class Kind { httpError, invalidURL, invalidResponse };

    /// `status` 0 where there was none.
    static AIServiceError httpError(int status, std::string message);
    static AIServiceError invalidURL() { return {Kind::invalidURL, "Invalid API endpoint URL"}; }
    static AIServiceError invalidResponse() { return {Kind::invalidResponse, "Invalid response from server"}; }

    Kind kind() const { return m_kind; }
    int status() const { return m_status; }
    /// As much as was read of what the server said of the error.
    const std::string& message() const { return m_message; }

  private:
    AIServiceError(Kind kind, const std::string& description, int status = 0, std::string message = {})
        : std::runtime_error(description),
          m_kind(kind),
          m_status(status),
          m_message(std::move(message)) {}

    Kind m_kind;
    int m_status;
    std::string m_message;
};

} // namespace quillorn
