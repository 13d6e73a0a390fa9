#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/Leftovers.h"

#include <filesystem>
#include <string_view>

namespace quillorn {

class RandomSource;

/// A fresh directory below the system's one for temporary files, named by a new UUID behind "Quillorn-" and for its
/// owner only. Gone, with all that is in it, at the end. Throws std::system_error.
class TemporaryDirectory {
  public:
    explicit TemporaryDirectory(RandomSource& random);
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    /// Removes those that killed processes have left.
    static void removeAbandoned() noexcept;

    const std::filesystem::path& path() const { return m_leftover.path(); }
    std::filesystem::path operator/(std::string_view name) const { return path() / name; }

  private:
    FileDescriptor m_claim;
    Leftover m_leftover;
};

} // namespace quillorn
