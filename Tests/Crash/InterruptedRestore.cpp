#include "Crash/InterruptedRestore.h"

#include "Integration/ServerProcess.h"

#include <csignal>
#include <thread>
#include <utility>

namespace quillorn {

namespace {

/// About the time that a restore takes.
constexpr int longestRestore = 250'000; // microseconds

/// The path of a new backup; empty after a fault.
std::string newBackup(Round& round) {
    ProgramProcess program(round.home, {.arguments = {"backup", "--json"}});
    if (program.wait() == 0)
        return *Json::parse(program.output()).find("file")->asString();
    round.fault("quillorn backup: " + program.errors());
    return {};
}

std::vector<KnownRecords> recordsOf(const std::vector<Ledger*>& ledgers) {
    std::vector<KnownRecords> records;
    for (const Ledger* ledger : ledgers)
        records.push_back(ledger->records());
    return records;
}

KnownRecords merged(const std::vector<KnownRecords>& parts) {
    KnownRecords all;
    for (const KnownRecords& part : parts)
        all.insert(part.begin(), part.end());
    return all;
}

} // namespace

void InterruptedRestore::mayHappen(Dice& dice, Round& round, std::uint16_t port) {
    if (!dice.chance(30))
        return;
    if (!m_kept.empty())
        return restore(dice, round, port);
    const std::string file = newBackup(round);
    if (file.empty())
        return;
    // Another backup of the same minute takes its name.
    std::filesystem::copy_file(file, backup(), std::filesystem::copy_options::overwrite_existing);
    m_kept = recordsOf(m_ledgers);
}

void InterruptedRestore::restore(Dice& dice, Round& round, std::uint16_t port) {
    ProgramProcess program(m_home, {.arguments = {"restore", "--yes", backup()}});
    std::this_thread::sleep_for(std::chrono::microseconds(dice.below(longestRestore)));
    program.signal(SIGKILL);
    const int status = program.wait();
    if (status != 0 && status != -SIGKILL)
        round.fault("quillorn restore: " + program.errors());

    const std::vector<KnownRecords> kept = std::exchange(m_kept, {});
    const auto listed = listEverything(port);
    if (differences(merged(kept), listed).empty()) {
        ++round.totals.restored;
        for (std::size_t i = 0; i < m_ledgers.size(); ++i)
            m_ledgers[i]->goBackTo(kept[i]);
        return;
    }
    ++round.totals.interrupted;
    if (status == 0)
        round.fault("a backup was not restored");
    for (const std::string& difference : differences(merged(recordsOf(m_ledgers)), listed))
        round.fault("after a restore that was killed, " + difference);
}

} // namespace quillorn
