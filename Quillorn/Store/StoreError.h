#pragma once

#include <stdexcept>
#include <string>

namespace quillorn {

/// A failure of the store, in words that a user can read.
class StoreError : public std::runtime_error {
  public:
    /// `code` is SQLite's extended result code, or 0 for a failure that SQLite has no part in.
    explicit StoreError(const std::string& message, int code = 0) : std::runtime_error(message), m_code(code) {}

    int code() const { return m_code; }

  private:
    int m_code;
};

} // namespace quillorn
