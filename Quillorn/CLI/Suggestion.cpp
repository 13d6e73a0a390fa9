#include "CLI/Suggestion.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

char lowercased(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// How many letters were left out, added, changed or swapped with their neighbour, in any case.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::vector<std::size_t>> steps(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i)
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                steps[i][j] = i + j;
                continue;
            }
            const bool isSame = lowercased(a[i - 1]) == lowercased(b[j - 1]);
            steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, steps[i - 1][j - 1] + (isSame ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
        }
    return steps[a.size()][b.size()];
}

} // namespace

std::string suggestion(std::string_view word, const std::vector<std::string>& known) {
    constexpr std::size_t longestWord = 64;
    if (word.size() < 2 || word.size() > longestWord)
        return {};
    const std::string* nearest = nullptr;
    std::size_t least = word.size() / 3 + 1;
    for (const std::string& each : known) {
        // The beginning of a word is as good as a slip in it.
        const std::size_t found = each.starts_with(word) ? 1 : distance(word, each);
        if (found < least || (found == least && nearest == nullptr)) {
            least = found;
            nearest = &each;
        }
    }
    return nearest != nullptr ? fmt::format("; did you mean \"{}\"?", *nearest) : std::string();
}

} // namespace quillorn
