#pragma once

#include <filesystem>
#include <string_view>

namespace quillorn {

class RandomSource;

/// A fresh directory below the system's one for temporary files, named by a new UUID and for its owner only. Gone,
/// with all that is in it, at the end. Throws std::system_error.
class TemporaryDirectory {
  public:
    explicit TemporaryDirectory(RandomSource& random);
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(std::string_view name) const { return m_path / name; }

  private:
    std::filesystem::path m_path;
};

} // namespace quillorn
