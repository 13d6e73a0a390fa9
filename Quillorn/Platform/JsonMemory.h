#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

namespace quillorn {

/// Memory for the JSON library, whose own allocators hand out null pointers that it then writes to.
struct JsonMemory {
    // The library's names.
    static constexpr bool kNeedFree = true;

    void* Malloc(std::size_t size) { return size == 0 ? nullptr : checked(std::malloc(size)); }
    void* Realloc(void* block, std::size_t, std::size_t size) {
        if (size > 0)
            return checked(std::realloc(block, size));
        Free(block);
        return nullptr;
    }
    static void Free(void* block) { std::free(block); }

  private:
    static void* checked(void* block) {
        if (block == nullptr)
            throw std::bad_alloc();
        return block;
    }
};

} // namespace quillorn
