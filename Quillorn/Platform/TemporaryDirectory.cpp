#include "Platform/TemporaryDirectory.h"

#include "Platform/UUID.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view prefix = "Quillorn-";

/// A new folder, which `claimed` keeps from removeAbandoned.
fs::path makeFolder(RandomSource& random, FileDescriptor& claimed) {
    for (;;) {
        fs::path path = fs::temp_directory_path() / (std::string(prefix) + UUID::random(random).string());
        if (::mkdir(path.c_str(), S_IRWXU) != 0)
            throw std::system_error(errno, std::generic_category(), "mkdir");
        claimed = FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        if (!claimed || claim(claimed))
            return path;
    }
}

} // namespace

TemporaryDirectory::TemporaryDirectory(RandomSource& random) : m_leftover(makeFolder(random, m_claim)) {}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(path(), ignored);
}

void TemporaryDirectory::removeAbandoned() noexcept {
    std::error_code ignored;
    for (fs::directory_iterator entry(fs::temp_directory_path(ignored), ignored), end; entry != end;
         entry.increment(ignored)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(prefix) && UUID::parse(name.substr(prefix.size())))
            removeIfAbandoned(entry->path());
    }
}

} // namespace quillorn
