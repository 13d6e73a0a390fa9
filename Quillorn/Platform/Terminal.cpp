#include "Platform/Terminal.h"

#include "Platform/UTF8.h"

#include <fmt/core.h>
#include <unistd.h>

namespace quillorn {

namespace {

/// One well-formed sequence.
std::string escapeOne(std::string_view sequence, LineEnds lineEnds) {
    const auto byteAt = [&](std::size_t index) { return static_cast<unsigned char>(sequence[index]); };
    const bool isC1 = sequence.size() == 2 && byteAt(0) == 0xC2 && byteAt(1) < 0xA0;
    const bool isControl = sequence.size() == 1 && (byteAt(0) < 0x20 || byteAt(0) == 0x7F);
    if (!isC1 && !isControl)
        return std::string(sequence);
    switch (sequence.front()) {
    case '\n':
        return lineEnds == LineEnds::kept ? "\n" : "\\n";
    case '\t':
        return "\\t";
    default:
        return fmt::format("\\u{:04X}", byteAt(sequence.size() - 1));
    }
}

} // namespace

std::string escapeControls(std::string_view text, LineEnds lineEnds) {
    std::string escaped;
    escaped.reserve(text.size());
    while (!text.empty()) {
        const auto [length, isValid] = firstUTF8Sequence(text);
        escaped += isValid ? escapeOne(text.substr(0, length), lineEnds) : std::string(replacementCharacter);
        text.remove_prefix(length);
    }
    return escaped;
}

bool isTerminal(std::FILE* stream) {
    return ::isatty(::fileno(stream)) == 1;
}

std::string textFor(std::FILE* stream, std::string_view text, LineEnds lineEnds) {
    return isTerminal(stream) ? escapeControls(text, lineEnds) : std::string(text);
}

} // namespace quillorn
