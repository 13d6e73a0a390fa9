// Kills the server again and again while it is written to by several clients, and looks after each restart whether
// all that was acknowledged is there, and nothing by halves.

#include "Crash/InterruptedRestore.h"
#include "Integration/ServerProcess.h"
#include "Support/TestStore.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <csignal>
#include <fmt/core.h>
#include <iostream>
#include <thread>

namespace quillorn {
namespace {

using Clock = std::chrono::steady_clock;

struct Options {
    int cycles = 20;
    int seed = 1;
    int seconds = 24 * 3600;
};

class CrashTest {
  public:
    explicit CrashTest(const Options& options);
    void cycle();
    const Totals& totals() const { return m_totals; }
    std::size_t faults() const { return m_faults; }
    /// Where the store is, for a look at it.
    const std::filesystem::path& home() const { return m_home.path(); }

  private:
    Round newRound();
    void work(ServerProcess& server);
    void end(ServerProcess& server, Round& round);
    void check();
    void fault(const std::string& words);
    std::vector<Ledger*> ledgers();

    TemporaryFolder m_home;
    Dice m_dice;
    std::vector<std::unique_ptr<Writer>> m_writers;
    std::unique_ptr<InterruptedRestore> m_restore;
    std::unique_ptr<ServerProcess> m_server;
    Totals m_totals;
    std::atomic<std::size_t> m_faults{0};
    std::mutex m_mutex; // of what threads say
};

constexpr int writerCount = 3;

CrashTest::CrashTest(const Options& options) : m_dice(static_cast<unsigned>(options.seed)) {
    for (int number = 0; number < writerCount; ++number)
        m_writers.push_back(std::make_unique<Writer>(fmt::format("w{}", number),
                                                     static_cast<unsigned>(options.seed * writerCount + number)));
    m_server = std::make_unique<ServerProcess>(m_home.path());
    m_restore = std::make_unique<InterruptedRestore>(m_home.path(), ledgers());
}

void CrashTest::cycle() {
    ++m_totals.cycles;
    work(*m_server);
    m_server = std::make_unique<ServerProcess>(m_home.path());
    check();
    Round quiet = newRound();
    m_restore->mayHappen(m_dice, quiet, m_server->port());
}

Round CrashTest::newRound() {
    return {.home = m_home.path(), .totals = m_totals, .fault = [this](const std::string& words) { fault(words); }};
}

void CrashTest::work(ServerProcess& server) {
    Round round = newRound();
    std::vector<std::jthread> threads;
    for (const auto& writer : m_writers)
        threads.emplace_back([&round, &server, &writer = *writer] {
            try {
                writer.run(round, server.port());
            } catch (const std::exception& error) {
                round.fault(error.what());
            }
            round.noteProgress();
        });
    // The end falls into the work, whatever the machine's speed.
    const std::size_t goal = 1 + m_dice.below(60);
    for (std::size_t count = 0; count < goal && m_faults == 0; count = round.progress)
        round.progress.wait(count);
    std::this_thread::sleep_for(std::chrono::microseconds(m_dice.below(3'000)));
    end(server, round);
}

void CrashTest::end(ServerProcess& server, Round& round) {
    const bool isClean = m_dice.chance(10);
    ++(isClean ? m_totals.cleanEnds : m_totals.kills);
    round.isEnding = true;
    server.signal(isClean ? SIGTERM : SIGKILL);
    if (const int status = server.wait(); status != (isClean ? 0 : -SIGKILL))
        fault(fmt::format("the server ended with {}: {}", status, server.errors()));
}

void CrashTest::check() {
    const auto file = m_home / "data/Quillorn/Quillorn.store";
    if (const std::string found = ForeignConnection(file).text("PRAGMA integrity_check"); found != "ok")
        fault("integrity_check: " + found);
    // Each ledger has the records whose keys begin with its writer's name.
    std::map<std::string, ListedRecords> parts;
    for (auto& [key, record] : listEverything(m_server->port()))
        parts[key.substr(0, key.find('.'))].emplace(key, record);
    for (std::size_t number = 0; number < m_writers.size(); ++number) {
        const std::string name = fmt::format("w{}", number);
        const Ledger::Finding finding = m_writers[number]->ledger().check(parts[name]);
        m_totals.happened += finding.happened;
        for (const std::string& words : finding.faults)
            fault(words);
        parts.erase(name);
    }
    for (const auto& [name, records] : parts)
        fault("there are records of nobody: " + name);
}

std::vector<Ledger*> CrashTest::ledgers() {
    std::vector<Ledger*> all;
    for (const auto& writer : m_writers)
        all.push_back(&writer->ledger());
    return all;
}

void CrashTest::fault(const std::string& words) {
    const std::lock_guard lock(m_mutex);
    ++m_faults;
    std::cerr << "cycle " << m_totals.cycles << ": " << words << std::endl;
}

/// Keeps the folder of a test that has failed.
void keep(const std::filesystem::path& home, int seed) {
    const auto kept = std::filesystem::temp_directory_path() / fmt::format("quillorn-crash-{}", seed);
    std::filesystem::remove_all(kept);
    std::filesystem::copy(home, kept, std::filesystem::copy_options::recursive);
    std::cerr << "the store is kept in " << kept.string() << std::endl;
}

int run(const Options& options) {
    const auto start = Clock::now();
    CrashTest test(options);
    const auto seconds = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    while (test.totals().cycles < options.cycles && seconds() < options.seconds && test.faults() == 0)
        test.cycle();
    const Totals& totals = test.totals();
    fmt::print("{} cycles in {:.0f} s: {} kills and {} clean ends of the server\n"
               "{} acknowledged writes; {} cut off, of which {} had happened\n"
               "{} restores with effect and {} killed before; {} faults\n",
               totals.cycles, seconds(), totals.kills, totals.cleanEnds, totals.acknowledged.load(),
               totals.cutOff.load(), totals.happened, totals.restored, totals.interrupted, test.faults());
    if (test.faults() > 0)
        keep(test.home(), options.seed);
    return test.faults() == 0 ? 0 : 1;
}

} // namespace
} // namespace quillorn

int main(int argc, char** argv) {
    quillorn::Options options;
    CLI::App line;
    line.add_option("--cycles", options.cycles, "How often the server is ended")->check(CLI::PositiveNumber);
    line.add_option("--seed", options.seed, "Of the chance")->check(CLI::PositiveNumber);
    line.add_option("--seconds", options.seconds, "Ends then, with the cycles done or not")->check(CLI::PositiveNumber);
    CLI11_PARSE(line, argc, argv);
    try {
        return quillorn::run(options);
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::endl;
        return 1;
    }
}
