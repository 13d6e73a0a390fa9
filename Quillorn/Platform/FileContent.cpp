#include "Platform/FileContent.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

namespace quillorn {

namespace {

[[noreturn]] void throwSystemError(int error, const char* what) {
    throw std::system_error(error, std::generic_category(), what);
}

Date dateOf(const timespec& time) {
    return std::chrono::floor<Date::duration>(Date{} + std::chrono::seconds{time.tv_sec} +
                                              std::chrono::nanoseconds{time.tv_nsec});
}

} // namespace

FileDescriptor openFile(const std::filesystem::path& file) {
    struct stat status{};
    return openFile(file, status);
}

FileDescriptor openFile(const std::filesystem::path& file, struct stat& status) {
    FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!opened || ::fstat(opened.number(), &status) != 0)
        throwSystemError(errno, "open");
    if (!S_ISREG(status.st_mode))
        throwSystemError(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, "open");
    return opened;
}

std::string readWhole(const FileDescriptor& file) {
    struct stat status{};
    if (::fstat(file.number(), &status) != 0)
        throwSystemError(errno, "fstat");
    return readWhole(file, static_cast<std::size_t>(status.st_size));
}

std::string readWhole(const FileDescriptor& file, std::size_t size) {
    std::string content(size, '\0');
    std::size_t length = 0;
    while (length < content.size()) {
        const ssize_t count = ::read(file.number(), content.data() + length, content.size() - length);
        if (count < 0 && errno != EINTR)
            throwSystemError(errno, "read");
        if (count == 0)
            break;
        length += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    content.resize(length);
    return content;
}

Date modificationDate(const struct stat& status) {
#ifdef __APPLE__
    return dateOf(status.st_mtimespec);
#else
    return dateOf(status.st_mtim);
#endif
}

Date statusChangeDate(const struct stat& status) {
#ifdef __APPLE__
    return dateOf(status.st_ctimespec);
#else
    return dateOf(status.st_ctim);
#endif
}

std::optional<Date> modificationDate(const std::filesystem::path& file) {
    struct stat status{};
    return ::stat(file.c_str(), &status) == 0 ? std::optional(modificationDate(status)) : std::nullopt;
}

} // namespace quillorn
