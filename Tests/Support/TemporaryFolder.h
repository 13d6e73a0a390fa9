#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quillorn {

/// A fresh folder for one test; gone, with all that is in it, at the end.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }
    std::filesystem::path operator/(std::string_view name) const { return m_path / name; }

  private:
    std::filesystem::path m_path;
};

std::string readFile(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, std::string_view content);

} // namespace quillorn
