#include "Fuzz/Lines.h"

#include "Fuzz/Harness.h"

#include <algorithm>
#include <utility>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximumSize);

namespace quillorn {

std::vector<std::string> linesOf(std::string_view input) {
    constexpr std::size_t mostLines = 8;
    std::vector<std::string> lines;
    while (!input.empty() && lines.size() < mostLines) {
        const std::size_t end = std::min(input.find('\n'), input.size());
        lines.emplace_back(input.substr(0, end));
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    return lines;
}

std::size_t mutateLines(std::uint8_t* data, std::size_t size, std::size_t limit, unsigned seed,
                        const LineWriter& writer) {
    Dice dice(seed);
    if (dice.chance(15))
        return LLVMFuzzerMutate(data, size, limit);
    std::vector<std::string> lines = linesOf(bytesOf(data, size));
    const auto somewhere = [&](std::size_t places) {
        return lines.begin() + static_cast<std::ptrdiff_t>(dice.below(places));
    };
    const std::size_t what = dice.below(10);
    if (lines.empty() || what < 3)
        lines.insert(somewhere(lines.size() + 1), writer.make(dice));
    else if (what < 8) {
        auto& line = *somewhere(lines.size());
        line = writer.change(line, dice);
    } else if (what == 8)
        lines.erase(somewhere(lines.size()));
    else
        std::swap(*somewhere(lines.size()), *somewhere(lines.size()));

    std::string result;
    for (const std::string& line : lines)
        if (result.size() + line.size() < limit)
            result += line + '\n';
    std::ranges::copy(result, data);
    return result.size();
}

} // namespace quillorn
