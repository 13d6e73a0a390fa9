#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

namespace quillorn {

/// Where the system wants a program's files.
class Paths {
  public:
    virtual ~Paths() = default;
    /// The user's folder for application data. Throws std::runtime_error when the user has none.
    virtual std::filesystem::path applicationSupport() const = 0;
    /// The user's home folder, as the environment has it, else as the user database has it; absent for a user without.
    virtual std::optional<std::filesystem::path> home() const = 0;
    /// As the user database has it, whatever the environment says.
    virtual std::optional<std::filesystem::path> accountHome() const = 0;
    /// The user's folder for settings. Throws as applicationSupport() does.
    virtual std::filesystem::path configuration() const = 0;
    /// The folder that the program's builds share under `identifier`; absent where the platform has none.
    virtual std::optional<std::filesystem::path> groupContainer(std::string_view identifier) const = 0;
    /// The folder of files that were installed with the program (openapi.json and the like). Throws
    /// std::runtime_error when there is none.
    virtual std::filesystem::path resources() const = 0;
};

/// The paths of the system that this program was built for.
std::unique_ptr<Paths> systemPaths();

} // namespace quillorn
