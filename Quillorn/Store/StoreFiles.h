#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>

namespace quillorn {

class Database;

/// Which file a path leads to, whatever it is called.
struct FileIdentity {
    dev_t device;
    ino_t inode;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// Absent where there is no file. Throws StoreError where that can't be told.
std::optional<FileIdentity> identityOf(const std::string& path);

/// Whether another process has that store open: SQLite locks the file of a store with a write-ahead log for reading as
/// long as a connection lasts. For a process that hasn't opened it itself; false where that can't be told.
bool isOpenElsewhere(const std::filesystem::path& store);

/// The files that an open store is made of. SQLite goes on writing into a file that was removed or replaced, and
/// reports every commit as done; so each writer looks first whether its paths still lead to what is open.
class StoreFiles {
  public:
    explicit StoreFiles(const std::filesystem::path& store);

    /// Notes what the paths lead to. The caller holds the write lock, and a connection is open and stays so: the system
    /// gives no open file's number to another file.
    void note();
    /// Throws StoreLostError where that has changed. To be asked before a further connection is opened: beside an empty
    /// file SQLite removes the log, and with it what was committed last.
    void check() const;
    /// Throws StoreLostError where that has changed, or where `database` has another file open. The caller holds the
    /// write lock.
    void check(const Database& database) const;

  private:
    struct File {
        std::string path;
        std::optional<FileIdentity> identity{};
    };
    std::array<File, 3> m_files; // the store, the write-ahead log, its shared memory
};

} // namespace quillorn
