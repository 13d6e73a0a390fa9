#pragma once

#include "Crash/Writers.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace quillorn {

/// Goes back to an earlier state by `quillorn restore`, which is killed at some moment, while the server runs and
/// nobody writes. Afterwards everything must be as it was or everything as it is in the backup.
class InterruptedRestore {
  public:
    InterruptedRestore(std::filesystem::path home, std::vector<Ledger*> ledgers)
        : m_home(std::move(home)),
          m_ledgers(std::move(ledgers)) {}

    /// Between two rounds: takes a backup, or restores it some rounds later.
    void mayHappen(Dice& dice, Round& round, std::uint16_t port);

  private:
    void restore(Dice& dice, Round& round, std::uint16_t port);
    std::filesystem::path backup() const { return m_home / "kept.lzfse"; }

    const std::filesystem::path m_home;
    const std::vector<Ledger*> m_ledgers;
    /// What each ledger had when the backup was taken; empty when there is none.
    std::vector<KnownRecords> m_kept;
};

} // namespace quillorn
