#include "Store/StoreFiles.h"

#include "Store/Database.h"
#include "Store/StoreError.h"

#include <cerrno>
#include <fmt/core.h>
#include <sys/stat.h>
#include <system_error>

namespace quillorn {

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat status{};
    if (::stat(path.c_str(), &status) == 0)
        return FileIdentity{status.st_dev, status.st_ino};
    if (errno == ENOENT || errno == ENOTDIR)
        return std::nullopt;
    throw StoreError(fmt::format("Can't look at {}: {}", path, std::generic_category().message(errno)));
}

StoreFiles::StoreFiles(const std::filesystem::path& store)
    : m_files{File{store.string()}, File{store.string() + "-wal"}, File{store.string() + "-shm"}} {}

void StoreFiles::note() {
    for (File& file : m_files)
        file.identity = identityOf(file.path);
}

void StoreFiles::check(const Database& database) const {
    for (const File& file : m_files)
        if (const auto found = identityOf(file.path); found != file.identity)
            throw StoreLostError(fmt::format("{} was {} while it was open", file.path, found ? "replaced" : "removed"));
    if (database.hasMoved())
        throw StoreLostError(fmt::format("{} was replaced while it was open", m_files[0].path));
}

} // namespace quillorn
