#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace quillorn {

class RandomSource;

/// The name to try after so many that were taken.
using SnapshotNames = std::function<std::string(int taken)>;

/// Writes a compressed, checked copy of the store into `folder`, which is made if need be, as a whole or not at all. No
/// file is replaced: the copy gets the first name that is free, or that a file with the same bytes has. It is one
/// consistent state, whoever writes meanwhile, and nobody waits for it. Returns its path. Throws BackupError.
std::filesystem::path snapshotStore(const std::filesystem::path& store, const std::filesystem::path& folder,
                                    const SnapshotNames& names, RandomSource& random);

/// Whether SQLite finds no fault in a database file that nobody has open.
bool isHealthySnapshot(const std::filesystem::path& file);

/// Decompresses a backup into `target`. Throws BackupError, also for one that is not healthy.
void unpackBackup(const std::filesystem::path& backup, const std::filesystem::path& target);

} // namespace quillorn
