#pragma once

#include "Platform/LoginItem.h"

#include <filesystem>

namespace quillorn {

/// A file that the session reads at its start: autostart/IDENTIFIER.desktop in the user's folder for settings. What has
/// no line that says that we wrote it, or is a link, is somebody else's.
class AutostartFile final : public LoginItem {
  public:
    AutostartFile(std::filesystem::path file, LoginProgram program)
        : m_file(std::move(file)),
          m_program(std::move(program)) {}

    State state() const override;
    void set(bool startsAtLogin) override;

  private:
    std::string content() const;

    const std::filesystem::path m_file;
    const LoginProgram m_program;
};

} // namespace quillorn
