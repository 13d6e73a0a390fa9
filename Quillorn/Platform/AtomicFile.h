#pragma once

#include "Platform/FileDescriptor.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

namespace quillorn {

/// What becomes of a symbolic link that stands where a file is to be written.
enum class Links {
    /// It is a name like any other, and replaced.
    replaced,
    /// It stays, and the file that it names is replaced.
    followed,
};

/// Who may read a file that was replaced.
enum class FileMode {
    ownerOnly,
    /// Whoever might read the one before.
    asBefore,
};

/// Puts `content` in the place of `file`, as a whole or not at all: written beside it, brought to the disk, renamed.
/// Throws std::system_error and leaves `file` as it was.
void replaceFile(const std::filesystem::path& file, std::string_view content, Links links = Links::replaced,
                 FileMode mode = FileMode::ownerOnly);

/// The same for its owner only, with what `write` hands on piece by piece. What `write` throws leaves `file` as it was.
void replaceFile(const std::filesystem::path& file,
                 const std::function<void(const std::function<void(std::string_view piece)>& put)>& write);

/// The same for a file for its owner only, where nothing has that name, not even a link; else returns false, with
/// nothing done.
bool createFile(const std::filesystem::path& file, std::string_view content);

/// Removes what killed processes have left of files that they were about to write into `folder`, by the names that
/// these were to have. Failures only leave more.
void removeAbandonedFiles(const std::filesystem::path& folder,
                          const std::function<bool(std::string_view target)>& isMeant);

/// Puts a copy of `source` in the place of `file` in the same way, piece by piece. Throws std::system_error.
void copyFile(const std::filesystem::path& source, const std::filesystem::path& file);

/// Creates what is missing of `folder`, for its owner only. Throws std::system_error.
void createPrivateFolder(const std::filesystem::path& folder);

/// An advisory lock among processes, and among objects of this process, that all lock the same file. Held as long as
/// the object lives; the file itself stays. Waits for its turn. Throws std::system_error.
class FileLock {
  public:
    explicit FileLock(const std::filesystem::path& lockFile);
    /// Absent, at once, while another one has it.
    static std::optional<FileLock> tryLock(const std::filesystem::path& lockFile);

  private:
    explicit FileLock(FileDescriptor file) : m_file(std::move(file)) {}

    FileDescriptor m_file;
};

} // namespace quillorn
