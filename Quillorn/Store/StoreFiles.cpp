#include "Store/StoreFiles.h"

#include "Platform/FileDescriptor.h"
#include "Store/Database.h"
#include "Store/StoreError.h"

#include <cerrno>
#include <fcntl.h>
#include <fmt/core.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quillorn {

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat status{};
    if (::stat(path.c_str(), &status) == 0)
        return FileIdentity{status.st_dev, status.st_ino};
    if (errno == ENOENT || errno == ENOTDIR)
        return std::nullopt;
    throw StoreError(fmt::format("Can't look at {}: {}", path, std::generic_category().message(errno)));
}

bool isOpenElsewhere(const std::filesystem::path& store) {
    // The bytes that SQLite's file format sets aside for readers.
    struct flock readers{};
    readers.l_type = F_WRLCK;
    readers.l_whence = SEEK_SET;
    readers.l_start = 0x40000002;
    readers.l_len = 510;
    const FileDescriptor file(::open(store.c_str(), O_RDONLY | O_CLOEXEC));
    return file && ::fcntl(file.number(), F_GETLK, &readers) == 0 && readers.l_type != F_UNLCK;
}

StoreFiles::StoreFiles(const std::filesystem::path& store)
    : m_files{File{store.string()}, File{store.string() + "-wal"}, File{store.string() + "-shm"}} {}

void StoreFiles::note() {
    for (File& file : m_files)
        file.identity = identityOf(file.path);
}

void StoreFiles::check() const {
    for (const File& file : m_files)
        if (const auto found = identityOf(file.path); found != file.identity)
            throw StoreLostError(fmt::format("{} was {} while it was open", file.path, found ? "replaced" : "removed"));
}

void StoreFiles::check(const Database& database) const {
    check();
    if (database.hasMoved())
        throw StoreLostError(fmt::format("{} was replaced while it was open", m_files[0].path));
}

} // namespace quillorn
