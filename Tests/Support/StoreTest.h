#pragma once

#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gtest/gtest.h>

namespace quillorn {

/// A test with a store of its own, a TestStore or a MemoryStore, and a context on it.
template <class Store>
struct StoreTest : testing::Test, Store {
    ModelContext context{*this->container};

    /// What somebody else does meanwhile.
    template <class Work>
    void elsewhere(const Work& work) {
        change(*this->container, work);
    }
};

} // namespace quillorn
