#include "Platform/AtomicFile.h"

#include "Platform/FileContent.h"

#include "Platform/Leftovers.h"
#include <array>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fmt/core.h>
#include <optional>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void throwLastError(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

constexpr std::string_view pattern = ".XXXXXX";

/// A file beside `target` that goes again unless it was brought to its place. Its name is ".target.XXXXXX".
class TemporaryFile {
  public:
    explicit TemporaryFile(const fs::path& target) {
        std::string path;
        do {
            path = (target.parent_path() / fmt::format(".{}{}", target.filename().string(), pattern)).string();
            m_file = FileDescriptor(mkstemp(path.data())); // mode 0600
            if (!m_file)
                throwLastError("create");
            ::fcntl(m_file.number(), F_SETFD, FD_CLOEXEC);
        } while (!claim(m_file));
        m_leftover.emplace(path);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (m_leftover)
            ::unlink(path());
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

    void sync() {
        if (::fsync(m_file.number()) != 0)
            throwLastError("fsync");
    }

    void takeModeOf(const fs::path& file) {
        struct stat status{};
        if (::stat(file.c_str(), &status) != 0 || ::fchmod(m_file.number(), status.st_mode & 07777) != 0)
            throwLastError("chmod");
    }

    void moveTo(const fs::path& target) {
        if (::rename(path(), target.c_str()) != 0)
            throwLastError("rename");
        m_leftover.reset();
    }

    /// False where the name is taken.
    bool moveToFree(const fs::path& target) {
        if (::link(path(), target.c_str()) == 0)
            return true; // the other name goes in the end
        if (errno == EEXIST)
            return false;
        // Some file systems know no second names. There an empty file keeps the name for the moment.
        const FileDescriptor place(::open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
        if (!place && errno == EEXIST)
            return false;
        if (!place)
            throwLastError("create");
        if (::rename(path(), target.c_str()) != 0) {
            const int error = errno;
            ::unlink(target.c_str());
            throw std::system_error(error, std::generic_category(), "rename");
        }
        m_leftover.reset();
        return true;
    }

  private:
    const char* path() const { return m_leftover->path().c_str(); }

    FileDescriptor m_file;
    std::optional<Leftover> m_leftover;
};

/// Brings the renaming itself to the disk. The new content is in place by now, so a failure is no reason to report
/// one; some file systems don't know the operation.
void syncFolder(const fs::path& folder) {
    const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened)
        ::fsync(opened.number());
}

FileDescriptor openLockFile(const fs::path& lockFile) {
    FileDescriptor file(::open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file)
        throwLastError("open");
    return file;
}

/// False where the operation is not to wait and another one has the lock.
bool lock(const FileDescriptor& file, int operation) {
    while (::flock(file.number(), operation) != 0) {
        if ((operation & LOCK_NB) != 0 && errno == EWOULDBLOCK)
            return false;
        if (errno != EINTR)
            throwLastError("flock");
    }
    return true;
}

} // namespace

void replaceFile(const fs::path& file, std::string_view content, Links links, FileMode mode) {
    const bool isFollowed = links == Links::followed && fs::is_symlink(fs::symlink_status(file));
    const fs::path target = isFollowed ? fs::weakly_canonical(file) : file;
    TemporaryFile temporary(target);
    if (mode == FileMode::asBefore)
        temporary.takeModeOf(target);
    temporary.write(content);
    temporary.sync();
    temporary.moveTo(target);
    syncFolder(target.parent_path());
}

void replaceFile(const fs::path& file,
                 const std::function<void(const std::function<void(std::string_view piece)>& put)>& write) {
    TemporaryFile temporary(file);
    write([&](std::string_view piece) { temporary.write(piece); });
    temporary.sync();
    temporary.moveTo(file);
    syncFolder(file.parent_path());
}

bool createFile(const fs::path& file, std::string_view content) {
    if (fs::exists(fs::symlink_status(file)))
        return false; // before the work of writing it
    TemporaryFile temporary(file);
    temporary.write(content);
    temporary.sync();
    if (!temporary.moveToFree(file))
        return false;
    syncFolder(file.parent_path());
    return true;
}

void removeAbandonedFiles(const fs::path& folder, const std::function<bool(std::string_view target)>& isMeant) {
    std::error_code ignored;
    for (fs::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored)) {
        const std::string name = entry->path().filename().string();
        if (name.size() > pattern.size() && name.starts_with('.') && name[name.size() - pattern.size()] == '.' &&
            isMeant(std::string_view(name).substr(1, name.size() - 1 - pattern.size())))
            removeIfAbandoned(entry->path());
    }
}

void copyFile(const fs::path& source, const fs::path& file) {
    const FileDescriptor opened = openFile(source);
    TemporaryFile temporary(file);
    std::array<char, std::size_t{64} * 1024> piece{};
    for (;;) {
        const ssize_t count = ::read(opened.number(), piece.data(), piece.size());
        if (count == 0)
            break;
        if (count > 0)
            temporary.write({piece.data(), static_cast<std::size_t>(count)});
        else if (errno != EINTR)
            throwLastError("read");
    }
    temporary.sync();
    temporary.moveTo(file);
    syncFolder(file.parent_path());
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

FileLock::FileLock(const fs::path& lockFile) : m_file(openLockFile(lockFile)) {
    lock(m_file, LOCK_EX);
}

std::optional<FileLock> FileLock::tryLock(const fs::path& lockFile) {
    FileDescriptor file = openLockFile(lockFile);
    return lock(file, LOCK_EX | LOCK_NB) ? std::optional(FileLock(std::move(file))) : std::nullopt;
}

} // namespace quillorn
