#pragma once

#include "Platform/Paths.h"

namespace quillorn {

/// The XDG base directories. The environment is read at each call.
class LinuxPaths final : public Paths {
  public:
    /// Of the program that runs.
    LinuxPaths();
    explicit LinuxPaths(std::filesystem::path executable) : m_executable(std::move(executable)) {}

    std::filesystem::path applicationSupport() const override;
    std::filesystem::path configuration() const override;
    std::optional<std::filesystem::path> home() const override;
    std::optional<std::filesystem::path> accountHome() const override;
    std::optional<std::filesystem::path> groupContainer(std::string_view identifier) const override;
    /// "Resources" beside the executable (a build tree), else "../share/quillorn" from there (an installation).
    std::filesystem::path resources() const override;

  private:
    std::filesystem::path m_executable;
};

} // namespace quillorn
