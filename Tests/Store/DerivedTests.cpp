#include "Support/StoreTest.h"

#include <functional>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

using Intent = ModelContext::Intent;

/// The number of tags, counted only where nothing is known of it.
struct TagCount {
    std::optional<std::int64_t> value;
};

std::int64_t tagCount(ModelContext& context) {
    auto& known = context.derived<TagCount>().value;
    if (!known) {
        const StatementLoan query = context.statement("SELECT count(*) FROM Tag");
        query->step();
        known = query->integer(0);
    }
    return *known;
}

void addTag(ModelContainer& container) {
    change(container, [](ModelContext& context) { make<Tag>(context, {.name = "T"}); });
}

TEST(Derived, isKnownUpToTheNextCommitOfWhomeverAndNeverOfWhatIsTakenBack) {
    TestStore store;
    MemoryStore memory;
    const auto other = store.open();
    for (ModelContainer* container : {store.container.get(), memory.container.get()}) {
        const auto count = [&] {
            ModelContext context(*container);
            return tagCount(context);
        };
        const auto statements = [&](const std::function<void()>& work) {
            const auto before = container->executedStatements();
            work();
            return container->executedStatements() - before;
        };
        EXPECT_EQ(count(), 0);
        const auto asked = statements(count);
        addTag(*container);
        EXPECT_GT(statements(count), asked);
        EXPECT_EQ(statements(count), asked);
        EXPECT_EQ(count(), 1);
        if (container == store.container.get())
            addTag(*other);
        else
            addTag(*container);
        EXPECT_EQ(count(), 2);
        {
            ModelContext taken(*container, Intent::update);
            taken.statement("DELETE FROM Tag")->run();
            EXPECT_EQ(tagCount(taken), 0);
        }
        EXPECT_EQ(count(), 2);
    }
    // A snapshot goes on seeing what it saw.
    ModelContext reader(*store.container);
    EXPECT_EQ(tagCount(reader), 2);
    addTag(*store.container);
    EXPECT_EQ(tagCount(reader), 2);
    reader.endReading();
    EXPECT_EQ(tagCount(reader), 3);
}

} // namespace
} // namespace quillorn
