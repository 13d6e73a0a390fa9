#pragma once

#include <filesystem>
#include <functional>
#include <memory>

namespace quillorn {

/// Watches one file for as long as it lives.
class FileWatch {
  public:
    FileWatch() = default;
    virtual ~FileWatch() = default;
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;
};

/// Calls `changed` on a thread of its own when the file was written to, made or removed: soon for the first write, and
/// then at most a hundred times a second. The file's folder must be there, the file need not. Once the watch has gone
/// nothing is called any more. Null when the system can't watch.
std::unique_ptr<FileWatch> watchFile(const std::filesystem::path& file, std::function<void()> changed);

} // namespace quillorn
