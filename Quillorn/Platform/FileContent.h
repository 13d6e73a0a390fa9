#pragma once

#include "Platform/Date.h"
#include "Platform/FileDescriptor.h"

#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace quillorn {

/// Opens for reading. Throws std::system_error, also for what is no regular file: a pipe would be waited for.
FileDescriptor openFile(const std::filesystem::path& file);
/// All of it, from where the descriptor stands. Throws std::system_error.
std::string readWhole(const FileDescriptor& file);

Date modificationDate(const struct stat& status);
/// Absent where it can't be told.
std::optional<Date> modificationDate(const std::filesystem::path& file);

} // namespace quillorn
