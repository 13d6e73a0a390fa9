#include "Platform/AtomicFile.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/core.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void throwLastError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

/// A file that goes again unless it was renamed to its place.
class TemporaryFile {
  public:
    explicit TemporaryFile(const fs::path& target)
        : m_path((target.parent_path() / fmt::format(".{}.XXXXXX", target.filename().string())).string()) {
        m_file = FileDescriptor(mkstemp(m_path.data())); // mode 0600
        if (!m_file)
            throwLastError("create");
        ::fcntl(m_file.number(), F_SETFD, FD_CLOEXEC);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!m_path.empty())
            ::unlink(m_path.c_str());
    }

    void write(std::string_view content) {
        while (!content.empty()) {
            const ssize_t count = ::write(m_file.number(), content.data(), content.size());
            if (count >= 0)
                content.remove_prefix(static_cast<std::size_t>(count));
            else if (errno != EINTR)
                throwLastError("write");
        }
    }

    void moveTo(const fs::path& target) {
        if (::fsync(m_file.number()) != 0)
            throwLastError("fsync");
        if (::rename(m_path.c_str(), target.c_str()) != 0)
            throwLastError("rename");
        m_path.clear();
    }

  private:
    std::string m_path;
    FileDescriptor m_file;
};

/// Brings the renaming itself to the disk. The new content is in place by now, so a failure is no reason to report
/// one; some file systems don't know the operation.
void syncFolder(const fs::path& folder) {
    const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened)
        ::fsync(opened.number());
}

} // namespace

void replaceFile(const fs::path& file, std::string_view content) {
    const fs::path target = fs::is_symlink(fs::symlink_status(file)) ? fs::weakly_canonical(file) : file;
    TemporaryFile temporary(target);
    temporary.write(content);
    temporary.moveTo(target);
    syncFolder(target.parent_path());
}

void createPrivateFolder(const fs::path& folder) {
    if (folder.empty() || fs::is_directory(folder))
        return;
    createPrivateFolder(folder.parent_path());
    if (::mkdir(folder.c_str(), S_IRWXU) == 0 || (errno == EEXIST && fs::is_directory(folder)))
        return;
    if (errno == EEXIST)
        errno = ENOTDIR; // a file stands in its place
    throwLastError("mkdir");
}

FileLock::FileLock(const fs::path& lockFile)
    : m_file(::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR)) {
    if (!m_file)
        throwLastError("open");
    while (::flock(m_file.number(), LOCK_EX) != 0)
        if (errno != EINTR)
            throwLastError("flock");
}

} // namespace quillorn
