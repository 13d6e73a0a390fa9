#include "Crash/Backups.h"

#include "Integration/ServerProcess.h"

namespace quillorn {

namespace {

/// What the program writes; a fault and nothing when it fails.
std::string outputOf(Round& round, const std::filesystem::path& home, const std::vector<std::string>& arguments) {
    ProgramProcess program(home, {.arguments = arguments});
    if (program.wait() == 0)
        return program.output();
    round.fault("quillorn " + arguments.front() + ": " + program.errors());
    return {};
}

} // namespace

void takeBackup(Round& round, const std::vector<const Ledger*>& ledgers) {
    std::vector<KnownRecords> before;
    before.reserve(ledgers.size());
    for (const Ledger* ledger : ledgers)
        before.push_back(ledger->records());
    const std::string output = outputOf(round, round.home, {"backup", "--json"});
    KnownRecords expected;
    for (std::size_t i = 0; i < ledgers.size(); ++i)
        expected.merge(ledgers[i]->untouchedSince(before[i]));
    if (output.empty())
        return;

    const TemporaryFolder other;
    const std::string file = *Json::parse(output).find("file")->asString();
    if (outputOf(round, other.path(), {"restore", "--yes", file}).empty())
        return;
    const auto listed = listEverything(ServerProcess(other.path()).port());
    for (const std::string& difference : differences(expected, listed, true))
        round.fault("in a backup, " + difference);
}

} // namespace quillorn
