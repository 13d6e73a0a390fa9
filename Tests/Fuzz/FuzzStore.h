#pragma once

#include "Models/SchemaVersions.h"
#include "Platform/NotificationCenter.h"
#include "Support/CrowdedStore.h"
#include "Support/FixedRandom.h"
#include "Support/RecordingLog.h"

#include <memory>
#include <optional>
#include <span>
#include <string>

namespace quillorn {

/// A store in memory with a few records of each kind: the same ones, with the same ids, in every run. One at a time:
/// its databases have the same names, too.
class FuzzStore {
  public:
    FuzzStore();

    /// Brings back the records of the beginning, with their row keys, and the chance that makes new ids.
    void reset();

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
    /// FixedRandom that can begin again.
    struct Chance final : RandomSource {
        void fill(std::span<std::uint8_t> bytes) override { random->fill(bytes); }
        std::optional<FixedRandom> random{1};
    };

    std::unique_ptr<ModelContainer> open(RandomSource& random);

    Chance m_random;
    FixedRandom m_originalRandom{2};
    NotificationCenter m_notifications;
    RecordingLog m_log;
    std::unique_ptr<ModelContainer> m_original;
    std::unique_ptr<ModelContainer> m_container;
    StoreIds m_ids;
};

} // namespace quillorn
