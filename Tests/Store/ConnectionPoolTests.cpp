#include "Store/ConnectionPool.h"

#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <vector>

namespace quillorn {
namespace {

TEST(ConnectionPool, closesWhatNobodyHasNeededSinceTheLastTimeButForOne) {
    const TemporaryFolder folder;
    ConnectionPool pool((folder / "store").string());
    /// Borrows so many at once; returns how many of them had to be opened.
    const auto use = [&](std::size_t count) {
        const auto before = pool.executions();
        std::vector<ConnectionPool::Loan> loans;
        for (std::size_t i = 0; i < count; ++i)
            loans.push_back(pool.borrow());
        return pool.executions() - before; // one each to configure it
    };
    EXPECT_EQ(use(12), 12U);
    EXPECT_EQ(use(12), 4U); // eight rest
    EXPECT_EQ(pool.closeUnused(), 0U);
    EXPECT_EQ(use(3), 0U);
    EXPECT_EQ(use(5), 0U);
    EXPECT_EQ(pool.closeUnused(), 3U);
    EXPECT_EQ(use(6), 1U);
    EXPECT_EQ(pool.closeUnused(), 0U);
    EXPECT_EQ(pool.closeUnused(), 5U);
    EXPECT_EQ(pool.closeUnused(), 0U);
    EXPECT_EQ(use(2), 1U);
}

} // namespace
} // namespace quillorn
