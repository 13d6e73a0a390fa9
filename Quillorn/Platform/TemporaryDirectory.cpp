#include "Platform/TemporaryDirectory.h"

#include "Platform/AtomicFile.h"
#include "Platform/UUID.h"

#include <system_error>

namespace quillorn {

TemporaryDirectory::TemporaryDirectory(RandomSource& random)
    : m_path(std::filesystem::temp_directory_path() / UUID::random(random).string()) {
    createPrivateFolder(m_path);
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

} // namespace quillorn
