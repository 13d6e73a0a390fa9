#include "Platform/Crypto.h"
#include "Platform/UUID.h"

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

TEST(SystemRandom, givesNewVersionFourIdentifiers) {
    SystemRandom random;
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

} // namespace
} // namespace quillorn
