#include "Platform/Linux/LinuxPaths.h"

#include <cstdlib>
#include <fmt/core.h>
#include <pwd.h>
#include <stdexcept>
#include <unistd.h>
#include <vector>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

/// The folder that an environment variable names; relative ones don't count.
std::optional<fs::path> folderFromEnvironment(const char* name) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
    const char* value = std::getenv(name);
    if (value == nullptr || !fs::path(value).is_absolute())
        return std::nullopt;
    return fs::path(value);
}

std::optional<fs::path> homeFromPasswords() {
    std::vector<char> buffer(16 * 1024);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr ||
        found->pw_dir == nullptr || !fs::path(found->pw_dir).is_absolute())
        return std::nullopt;
    return fs::path(found->pw_dir);
}

std::optional<fs::path> homeFolder() {
    const auto home = folderFromEnvironment("HOME");
    return home ? home : homeFromPasswords();
}

fs::path baseFolder(const char* variable, const char* belowHome) {
    if (auto folder = folderFromEnvironment(variable))
        return *folder;
    const auto home = homeFolder();
    if (!home)
        throw std::runtime_error("Can't find the home folder: HOME is not set and the user has none on record");
    return *home / belowHome;
}

} // namespace

LinuxPaths::LinuxPaths() {
    std::error_code error; // without /proc the resources are not found, and resources() says so
    m_executable = fs::read_symlink("/proc/self/exe", error);
}

fs::path LinuxPaths::applicationSupport() const {
    return baseFolder("XDG_DATA_HOME", ".local/share");
}

fs::path LinuxPaths::configuration() const {
    return baseFolder("XDG_CONFIG_HOME", ".config");
}

std::optional<fs::path> LinuxPaths::home() const {
    return homeFolder();
}

std::optional<fs::path> LinuxPaths::accountHome() const {
    return homeFromPasswords();
}

std::optional<fs::path> LinuxPaths::groupContainer(std::string_view) const {
    return std::nullopt;
}

fs::path LinuxPaths::resources() const {
    const fs::path folder = m_executable.parent_path();
    const fs::path built = folder / "Resources";
    const fs::path installed = (folder / "../share/quillorn").lexically_normal();
    std::error_code error;
    for (const fs::path& candidate : {built, installed})
        if (fs::is_directory(candidate, error))
            return candidate;
    throw std::runtime_error(fmt::format("Can't find the program's files: neither {} nor {} is a folder",
                                         built.string(), installed.string()));
}

std::unique_ptr<Paths> systemPaths() {
    return std::make_unique<LinuxPaths>();
}

} // namespace quillorn
