#include "Platform/Crypto.h"
#include "Platform/UUID.h"
#include "Support/FixedRandom.h"

#include <gtest/gtest.h>
#include <set>

namespace quillorn {
namespace {

TEST(UUID, readsEitherCaseWritesUpperCaseAndOrdersByItsBytes) {
    const auto id = UUID::parse("3f2504e0-4f89-11d3-9A0C-0305e82c33AF");
    ASSERT_TRUE(id);
    EXPECT_EQ(id->string(), "3F2504E0-4F89-11D3-9A0C-0305E82C33AF");
    EXPECT_EQ(UUID::parse(id->string()), id);
    EXPECT_EQ(UUID().string(), "00000000-0000-0000-0000-000000000000");
    for (const char* text : {"", "3F2504E04F8911D39A0C0305E82C3301", "{3F2504E0-4F89-11D3-9A0C-0305E82C3301}",
                             "3F2504E0-4F89-11D3-9A0C-0305E82C330", "3F2504E0-4F89-11D3-9A0C-0305E82C33011",
                             "3F2504E0-4F89-11D3-9A0C-0305E82C330G", "3F2504E04-F89-11D3-9A0C-0305E82C3301",
                             "3F2504E0_4F89-11D3-9A0C-0305E82C3301", " 3F2504E0-4F89-11D3-9A0C-0305E82C330",
                             "3F2504E0-4F89-11D3-9A0C-0305E82C33\xC3\xA9"})
        EXPECT_EQ(UUID::parse(text), std::nullopt) << text;
    EXPECT_LT(*UUID::parse("00000000-0000-0000-0000-0000000000FF"),
              *UUID::parse("00000000-0000-0000-0000-000000000100"));
    EXPECT_LT(*UUID::parse("7F000000-0000-0000-0000-000000000000"),
              *UUID::parse("80000000-0000-0000-0000-000000000000"));
}

/// What holds for every source of random bytes.
template <typename Source>
class RandomSourceContract : public testing::Test {};
using Sources = testing::Types<SystemRandom, FixedRandom>;
TYPED_TEST_SUITE(RandomSourceContract, Sources);

TYPED_TEST(RandomSourceContract, givesNewVersionFourIdentifiers) {
    TypeParam random;
    std::set<UUID> seen;
    std::set<std::size_t> hashes;
    for (int i = 0; i < 500; ++i) {
        const UUID id = UUID::random(random);
        EXPECT_EQ(id.bytes()[6] >> 4, 4);
        EXPECT_EQ(id.bytes()[8] >> 6, 2);
        seen.insert(id);
        hashes.insert(std::hash<UUID>()(id));
    }
    EXPECT_EQ(seen.size(), 500u);
    EXPECT_EQ(hashes.size(), 500u);
}

TYPED_TEST(RandomSourceContract, fillsAnyLength) {
    TypeParam random;
    for (const std::size_t length : {0u, 1u, 33u, 100'000u}) {
        std::vector<std::uint8_t> bytes(length + 1, 0);
        random.fill(std::span(bytes).first(length));
        EXPECT_EQ(bytes.back(), 0);
        const std::set<std::uint8_t> values(bytes.begin(), bytes.end() - 1);
        EXPECT_GE(values.size(), std::min<std::size_t>(length, 4)); // 33 bytes of three values: never
    }
}

TEST(FixedRandom, repeatsItselfForItsSeed) {
    FixedRandom a(5), b(5), c(6);
    const UUID first = UUID::random(a);
    EXPECT_EQ(first, UUID::random(b));
    EXPECT_NE(first, UUID::random(c));
    a.restart();
    EXPECT_EQ(first, UUID::random(a));
}

TEST(Crypto, hexStringIsLowerCase) {
    EXPECT_EQ(hexString(std::vector<std::uint8_t>{0x00, 0x0F, 0xA5, 0xFF}), "000fa5ff");
}

} // namespace
} // namespace quillorn
