#pragma once

#include <stdexcept>

namespace quillorn {

/// A backup or restore that failed, in words that a user can read.
class BackupError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace quillorn
