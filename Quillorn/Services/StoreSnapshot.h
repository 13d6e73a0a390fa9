#pragma once

#include <filesystem>
#include <string>

namespace quillorn {

class RandomSource;

/// Writes a compressed, checked copy of the store as `fileName` into `folder`, which is made if need be; the file of
/// that name is replaced as a whole or not at all. The copy is one consistent state, whoever writes meanwhile, and
/// nobody waits for it. Returns its path. Throws BackupError.
std::filesystem::path snapshotStore(const std::filesystem::path& store, const std::filesystem::path& folder,
                                    const std::string& fileName, RandomSource& random);

/// Whether SQLite finds no fault in a database file that nobody has open.
bool isHealthySnapshot(const std::filesystem::path& file);

/// Decompresses a backup into `target`. Throws BackupError, also for one that is not healthy.
void unpackBackup(const std::filesystem::path& backup, const std::filesystem::path& target);

} // namespace quillorn
