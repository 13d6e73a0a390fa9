#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// What the fuzzer starts from. Each program defines it; `--seeds FOLDER` writes them there.
std::vector<std::string> seeds();

/// Ends the program when an input has brought out a fault; libFuzzer keeps the input.
void require(bool holds, std::string_view words);

inline std::string_view bytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace quillorn
