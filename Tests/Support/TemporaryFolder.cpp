#include "Support/TemporaryFolder.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <stdlib.h>

namespace quillorn {

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "quillorn-test-XXXXXX").string();
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
