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

/// Somebody else was writing for longer than the caller would wait. Nothing was done; another try may succeed.
class StoreBusyError : public StoreError {
  public:
    using StoreError::StoreError;
};

/// A file of the store was removed or replaced under the open container: what it would write from here on is lost.
class StoreLostError : public StoreError {
  public:
    using StoreError::StoreError;
};

} // namespace quillorn
