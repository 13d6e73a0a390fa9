#pragma once

#include "Models/SchemaVersions.h"
#include "Platform/NotificationCenter.h"
#include "Support/CrowdedStore.h"
#include "Support/FixedRandom.h"
#include "Support/RecordingLog.h"

#include <memory>
#include <string>

namespace quillorn {

/// A store in memory with a few records of each kind: the same ones, with the same ids, each time one is made.
class FuzzStore {
  public:
    FuzzStore();

    ModelContainer& container() const { return *m_container; }
    RandomSource& random() { return m_random; }
    NotificationCenter& notifications() { return m_notifications; }
    SystemLog& log() { return m_log; }
    const StoreIds& ids() const { return m_ids; }

    /// Every value of every row, to compare with.
    std::string content() const;
    /// Ends the program unless SQLite finds the store sound, with all references in order.
    void requireSound() const;

  private:
    FixedRandom m_random;
    NotificationCenter m_notifications;
    RecordingLog m_log;
    std::unique_ptr<ModelContainer> m_container;
    StoreIds m_ids;
};

} // namespace quillorn
