#pragma once

#include "Platform/FileDescriptor.h"

#include <filesystem>
#include <string_view>

namespace quillorn {

/// Puts `content` in the place of `file`, as a whole or not at all: written beside it, brought to the disk, renamed.
/// The file is readable by its owner only. A symbolic link stays one; the file that it names is replaced. Throws
/// std::system_error and leaves `file` as it was.
void replaceFile(const std::filesystem::path& file, std::string_view content);

/// Creates what is missing of `folder`, for its owner only. Throws std::system_error.
void createPrivateFolder(const std::filesystem::path& folder);

/// An advisory lock among processes, and among objects of this process, that all lock the same file. Held as long as
/// the object lives; the file itself stays. Waits for its turn. Throws std::system_error.
class FileLock {
  public:
    explicit FileLock(const std::filesystem::path& lockFile);

  private:
    FileDescriptor m_file;
};

} // namespace quillorn
