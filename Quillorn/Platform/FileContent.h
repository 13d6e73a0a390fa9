#pragma once

#include "Platform/Date.h"
#include "Platform/FileDescriptor.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace quillorn {

/// Opens for reading. Throws std::system_error, also for what is no regular file: a pipe would be waited for.
FileDescriptor openFile(const std::filesystem::path& file);
/// The same, telling what fstat() says of it.
FileDescriptor openFile(const std::filesystem::path& file, struct stat& status);
/// All of it, from where the descriptor stands. Throws std::system_error.
std::string readWhole(const FileDescriptor& file);
/// The same for a file of that size; no more is read.
std::string readWhole(const FileDescriptor& file, std::size_t size);

Date modificationDate(const struct stat& status);
/// When anything of the file was last changed, its name and mode as well.
Date statusChangeDate(const struct stat& status);
/// Absent where it can't be told.
std::optional<Date> modificationDate(const std::filesystem::path& file);

} // namespace quillorn
