#pragma once

#include "Crash/Rest.h"
#include "Support/Dice.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>

namespace quillorn {

/// What has happened in all rounds so far. The writers count on threads of their own.
struct Totals {
    int cycles = 0;
    int kills = 0;
    int cleanEnds = 0;
    int restored = 0;
    int interrupted = 0;      // restores without effect
    std::size_t happened = 0; // of what was cut off
    std::atomic<std::size_t> acknowledged{0};
    std::atomic<std::size_t> cutOff{0};
};

/// One round of the server, from its start to its end, as the writers see it.
struct Round {
    std::filesystem::path home;
    Totals& totals;
    /// Set before the server is ended: from then on it may leave requests without an answer.
    std::atomic<bool> isEnding{false};
    std::function<void(const std::string&)> fault; // from any thread
    /// What main waits for: counts acknowledgements, and writers that have ended.
    std::atomic<std::size_t> progress{0};

    void noteAcknowledged() {
        ++totals.acknowledged;
        noteProgress();
    }
    void noteProgress() {
        ++progress;
        progress.notify_all();
    }
};

/// Creates, changes and deletes projects and what is in them, all of its own, as chance has it. Every change sets
/// several fields and often several rows, so that half of one would show.
class Writer {
  public:
    /// `name` begins the keys of its records.
    Writer(std::string name, unsigned seed) : m_name(std::move(name)), m_dice(seed) {}

    /// Until the server is gone.
    void run(Round& round, std::uint16_t port);
    Ledger& ledger() { return m_ledger; }

  private:
    struct Step {
        WriteRequest request;
        Operation operation;
    };

    Step nextStep();
    Step create(const std::string& kind, const std::string& owner);
    Step update(const std::string& key);
    Step remove(const std::string& key);
    Step complete(const std::string& key);
    Step stop(const std::string& key);
    /// The fields that a request sets at a record's revision, and that lists show then.
    Json::Object fieldsOf(const std::string& kind, const std::string& key, int revision);
    /// The sorted ids of some tags.
    Json::Array someTags();
    /// A record of that kind; empty when there is none.
    std::string some(const std::string& kind);

    std::string m_name;
    Dice m_dice;
    Ledger m_ledger;
    const KnownRecords& m_records = m_ledger.records();
    int m_made = 0;
    int m_revision = 0;
};

} // namespace quillorn
