#pragma once

#include "Support/CrowdedStore.h"
#include "Support/FixedRandom.h"
#include "Support/TestStore.h"

#include <memory>
#include <string>

namespace quillorn {

/// A store in memory with a few records of each kind: the same ones, with the same ids, in every run. One at a time:
/// its databases have the same names, too.
class FuzzStore : public SurroundingsWith<FixedRandom> {
  public:
    FuzzStore();

    /// Brings back the records of the beginning, with their row keys, and the chance that makes new ids.
    void reset();

    ModelContainer& container() const { return *m_container; }
    const StoreIds& ids() const { return m_ids; }

    /// Every value of every row, to compare with.
    std::string content() const;
    /// Ends the program unless SQLite finds the store sound, with all references in order.
    void requireSound() const;

  private:
    /// Of another seed: no new record gets the id of one of the beginning.
    SurroundingsWith<FixedRandom> m_ofOriginal{.random = FixedRandom(2), .notifications = {}, .log = {}};
    std::unique_ptr<ModelContainer> m_original;
    std::unique_ptr<ModelContainer> m_container;
    StoreIds m_ids;
};

} // namespace quillorn
