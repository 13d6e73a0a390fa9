#include "Support/TemporaryFolder.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>
#include <unistd.h>

namespace quillorn {

namespace {

/// A file system in memory where there is one: tests make many small files, and no test is about the disk's speed.
std::filesystem::path root() {
    const char* const inMemory = "/dev/shm";
    if (::getenv("TMPDIR") == nullptr && ::access(inMemory, W_OK | X_OK) == 0)
        return inMemory;
    return std::filesystem::temp_directory_path();
}

} // namespace

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (root() / "quillorn-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    m_path = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(m_path, ignored);
}

std::string readFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in)
        throw std::runtime_error("can't read " + file.string());
    return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const std::filesystem::path& file, std::string_view content) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!out.flush())
        throw std::runtime_error("can't write " + file.string());
}

} // namespace quillorn
