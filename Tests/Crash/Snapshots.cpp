#include "Crash/Snapshots.h"

#include "Integration/ServerProcess.h"
#include "Support/TestStore.h"

namespace quillorn {

void takeSnapshot(Round& round, const std::vector<const Ledger*>& ledgers) {
    TemporaryFolder home;
    const auto snapshot = home / "data/Quillorn/Quillorn.store";
    std::filesystem::create_directories(snapshot.parent_path());
    std::vector<KnownRecords> before;
    before.reserve(ledgers.size());
    for (const Ledger* ledger : ledgers)
        before.push_back(ledger->records());
    // Read-only, as a backup is.
    ForeignConnection("file:" + (round.home / "data/Quillorn/Quillorn.store").string() + "?mode=ro")
        .execute("VACUUM INTO '" + snapshot.string() + "'");
    KnownRecords expected;
    for (std::size_t i = 0; i < ledgers.size(); ++i)
        expected.merge(ledgers[i]->untouchedSince(before[i]));

    const auto listed = listEverything(ServerProcess(home.path()).port());
    for (const std::string& difference : differences(expected, listed, true))
        round.fault("in a snapshot, " + difference);
}

} // namespace quillorn
