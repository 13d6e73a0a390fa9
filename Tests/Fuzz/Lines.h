#pragma once

#include "Support/Dice.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// An input of several messages has each on a line of its own.
std::vector<std::string> linesOf(std::string_view input);

/// How a fuzzer knows to write messages.
struct LineWriter {
    std::function<std::string(Dice&)> make;
    /// The same message with something else in it; what can't be read may stay as it is.
    std::function<std::string(const std::string& line, Dice&)> change;
};

/// What LLVMFuzzerCustomMutator does for such inputs: adds, changes, removes and moves messages, or leaves it to
/// libFuzzer to change bytes.
std::size_t mutateLines(std::uint8_t* data, std::size_t size, std::size_t limit, unsigned seed,
                        const LineWriter& writer);

} // namespace quillorn
