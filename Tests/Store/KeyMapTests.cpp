#include "Store/KeyMap.h"

#include <gtest/gtest.h>
#include <limits>
#include <map>

namespace quillorn {
namespace {

TEST(KeyMap, holdsWhatAMapHolds) {
    // Neighbours, steps that share their low bits, and the ends of the range.
    for (const RowKey step : {RowKey{1}, RowKey{16}, RowKey{4096}, RowKey{1} << 40}) {
        KeyMap<RowKey> keys;
        std::map<RowKey, RowKey> expected;
        EXPECT_FALSE(keys.contains(step));
        for (RowKey i = 1; i <= 1000; ++i) {
            keys[i * step] += i;
            keys[i * step] += 1;
            expected[i * step] = i + 1;
        }
        keys[std::numeric_limits<RowKey>::max()] = expected[std::numeric_limits<RowKey>::max()] = 7;
        keys[-1] = expected[-1] = 8;
        keys.reserve(5000);
        EXPECT_EQ(keys.size(), expected.size());
        for (const auto& [key, value] : expected) {
            ASSERT_NE(keys.find(key), nullptr) << key;
            EXPECT_EQ(*keys.find(key), value);
            EXPECT_EQ(keys.contains(key ^ 2), expected.contains(key ^ 2)) << key;
        }
    }
}

} // namespace
} // namespace quillorn
