#include "Views/ObservableList.h"

namespace quillorn {

std::vector<bool> longestIncreasingRun(std::span<const std::size_t> values) {
    constexpr auto none = static_cast<std::size_t>(-1);
    // ends[n]: where the smallest value stands that ends a run of n + 1.
    std::vector<std::size_t> ends;
    std::vector<std::size_t> before(values.size(), none);
    for (std::size_t index = 0; index < values.size(); ++index) {
        const auto place =
            std::ranges::lower_bound(ends, values[index], {}, [&](std::size_t end) { return values[end]; });
        if (place != ends.begin())
            before[index] = *std::prev(place);
        if (place == ends.end())
            ends.push_back(index);
        else
            *place = index;
    }
    std::vector<bool> isIn(values.size(), false);
    for (std::size_t index = ends.empty() ? none : ends.back(); index != none; index = before[index])
        isIn[index] = true;
    return isIn;
}

} // namespace quillorn
