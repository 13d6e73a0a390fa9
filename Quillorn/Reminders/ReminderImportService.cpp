#include "Reminders/ReminderImportService.h"

#include "AI/AIServiceError.h"
#include "AI/JsonExtraction.h"
#include "Models/Settings.h"
#include "Platform/AtomicFile.h"
#include "Platform/Background.h"
#include "Platform/Clock.h"
#include "Platform/ReminderStore.h"
#include "Platform/SystemLog.h"
#include "Reminders/OrNothing.h"

#include <algorithm>
#include <fmt/core.h>
#include <thread>
#include <utility>

namespace quillorn {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds answerPatience{120};
constexpr std::int64_t usualInterval = 60; // minutes
constexpr std::int64_t longestInterval = 60 * 24 * 366 * 100;
/// Between two looks whether another process has done with its import.
constexpr std::chrono::milliseconds lockPause{50};
constexpr const char* nothingNew = "Nothing new";
constexpr const char* notConfigured = "AI endpoint not configured (Settings → AI)";

std::optional<Date> storedDate(SettingsStore& store) {
    const Json value = Settings(store).value(setting("reminderImportLastRun"));
    return value.asString() ? parseISO8601(*value.asString()) : std::nullopt;
}

/// Waits until no other process imports.
std::optional<FileLock> waitForLock(const std::filesystem::path& file, const std::stop_token& stop) {
    createPrivateFolder(file.parent_path());
    std::optional<FileLock> lock;
    while (!(lock = FileLock::tryLock(file)) && !stop.stop_requested())
        std::this_thread::sleep_for(lockPause);
    return lock;
}

} // namespace

/// A pass under way; nothing of it is left when it ends early.
class ReminderImportService::Run {
  public:
    explicit Run(ReminderImportService& service) : m_service(service) {
        m_service.m_isRunning = true;
        m_service.m_observers.tell();
    }
    ~Run() {
        m_service.m_isRunning = false;
        m_service.m_phase.reset();
    }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

  private:
    ReminderImportService& m_service;
};

ReminderImportService::ReminderImportService(ReminderImportEnvironment environment, std::filesystem::path recordsFile,
                                             ModelContainer* container, bool schedule)
    : m_environment(environment),
      m_container(container),
      m_memory(std::make_shared<ReminderMemory>(std::move(recordsFile), environment.clock, environment.log)),
      m_ai(environment.httpClient, environment.settings),
      m_lastRunDate(storedDate(environment.settings)) {
    const Json result = Settings(environment.settings).value(setting("reminderImportLastResult"));
    if (result.asString())
        m_lastResult = *result.asString();
    if (!schedule || !container)
        return;
    m_timer = environment.mainQueue.every(tickPeriod, [this] { tick(); });
    // Not before the queue runs: a program may have things to do that come before the first thread.
    m_firstLook = environment.mainQueue.after(0ms, [this] { m_tasks.start(refresh()); });
}

ReminderImportService::~ReminderImportService() {
    for (const auto& timer : {m_timer, m_firstLook})
        if (timer)
            m_environment.mainQueue.cancel(*timer);
}

std::vector<std::string> ReminderImportService::recent() const {
    std::vector<std::string> lines;
    const Json value = Settings(m_environment.settings).value(setting("reminderImportRecent"));
    if (value.asArray())
        for (const Json& line : *value.asArray())
            lines.push_back(*line.asString());
    return lines;
}

std::vector<std::string> ReminderImportService::chosenLists() const {
    std::vector<std::string> lists;
    try {
        const Json value = Json::parse(Settings(m_environment.settings).text(setting("reminderImportLists")));
        if (!isOfType(value, SettingType::textList))
            return lists;
        for (const Json& name : *value.asArray())
            lists.push_back(*name.asString());
    } catch (const JsonError&) {
        // No list is chosen.
    }
    return lists;
}

bool ReminderImportService::completesReminders() const {
    return Settings(m_environment.settings).boolean(setting("reminderImportCompletes"));
}

std::optional<Date> ReminderImportService::nextRunDate() const {
    const Settings settings(m_environment.settings);
    if (!settings.boolean(setting("reminderImportAuto")))
        return std::nullopt;
    const std::int64_t minutes = settings.integer(setting("reminderImportIntervalMinutes"));
    const std::chrono::minutes interval{minutes < 1 ? usualInterval : std::min(minutes, longestInterval)};
    // Another process may have had the last pass.
    const std::optional<Date> stored = storedDate(m_environment.settings);
    const std::optional<Date> last = stored && m_lastRunDate ? std::max(*stored, *m_lastRunDate)
                                     : stored                ? stored
                                                             : m_lastRunDate;
    return last ? *last + interval : Date{} - std::chrono::years{2000};
}

void ReminderImportService::tick() {
    const std::optional<Date> next = m_isRunning ? std::nullopt : nextRunDate();
    if (next && *next <= m_environment.clock.now())
        startImport();
}

void ReminderImportService::startImport() {
    m_tasks.start(runImport());
}

Task<> ReminderImportService::runImport() {
    if (!m_container || m_isRunning)
        co_return;
    std::optional<std::string> words;
    {
        const Run run(*this);
        m_hasProblems = true;
        try {
            words = co_await pass();
        } catch (const std::exception& error) {
            words = fmt::format("Failed: {}", error.what());
        }
    }
    if (words)
        finishRun(std::move(*words));
    else // who has the lock tells how it ends
        m_lastResult = "Another Quillorn is importing";
    m_observers.tell();
}

Task<std::optional<std::string>> ReminderImportService::pass() {
    ReminderScan scan{.lists = chosenLists(), .rows = {}, .openIDs = {}};
    if (scan.lists.empty())
        co_return "No lists selected";
    if (!demoDecide && !AIService::isConfigured(m_environment.settings))
        co_return notConfigured;
    if (!co_await ensureAccess())
        co_return "No access to Reminders";
    setPhase("Reading reminders…");
    auto takeLock = [file = lockFile()](const std::stop_token&) {
        createPrivateFolder(file.parent_path());
        return FileLock::tryLock(file);
    };
    const std::optional<FileLock> lock = co_await m_environment.background.run(std::move(takeLock));
    if (!lock)
        co_return std::nullopt;
    auto settle = [container = m_container, memory = m_memory](const std::stop_token&) {
        settlePending(*container, *memory);
    };
    co_await m_environment.background.run(std::move(settle));
    GatheredReminders gathered = co_await gather(scan.lists);
    scan.openIDs = std::move(gathered.openIDs);
    const std::vector<ReminderItem>& fresh = gathered.reminders.fresh;
    const std::size_t known = gathered.reminders.known.size();
    if (fresh.empty()) {
        std::vector<ReminderImportRow> none;
        co_await applyAndRemember(std::move(none), false, std::move(scan));
        m_hasProblems = false;
        co_return known == 0 ? nothingNew : fmt::format("{} ({} reviewed earlier)", nothingNew, known);
    }
    const std::vector<ReminderDecision> decisions = co_await decide(fresh, gathered.projects);
    std::vector<ReminderImportRow> rows = buildRows(decisions, gathered.openTasks, gathered.projects, fresh);
    const std::size_t count = rows.size();
    const ApplyResult result = co_await applyAndRemember(std::move(rows), completesReminders(), std::move(scan));
    m_hasProblems = !result.failures.empty();
    co_return importResult(fresh.size(), result.created, count, known, result.failures);
}

void ReminderImportService::finishRun(std::string words) {
    m_lastRunDate = m_environment.clock.now();
    m_lastResult = std::move(words);
    try {
        Settings settings(m_environment.settings);
        settings.set(setting("reminderImportLastRun"), formatISO8601(*m_lastRunDate));
        settings.set(setting("reminderImportLastResult"), *m_lastResult);
    } catch (const std::runtime_error& error) {
        m_environment.log.log(fmt::format("Reminders: {}", error.what()));
    }
}

Task<bool> ReminderImportService::ensureAccess() {
    if (demoReminders)
        co_return true;
    auto ask = [&store = m_environment.reminders](const std::stop_token&) {
        return orNothing([&] { return store.requestFullAccess(); });
    };
    co_return co_await m_environment.background.run(std::move(ask));
}

Task<std::vector<std::string>> ReminderImportService::listNames() {
    auto read = [reading = reading()](const std::stop_token&) { return reading.listNames(); };
    return m_environment.background.run(std::move(read));
}

Task<std::vector<ReminderItem>> ReminderImportService::openReminders(std::vector<std::string> lists) {
    auto read = [lists = std::move(lists), reading = reading()](const std::stop_token&) { return reading.open(lists); };
    return m_environment.background.run(std::move(read));
}

Task<GatheredReminders> ReminderImportService::gather(std::vector<std::string> lists) {
    auto read = [lists = std::move(lists), reading = reading()](const std::stop_token&) {
        return reading.gather(lists);
    };
    return m_environment.background.run(std::move(read));
}

Task<std::vector<ReminderDecision>> ReminderImportService::decide(std::vector<ReminderItem> items,
                                                                  std::vector<ReminderImportProject> projects) {
    if (demoDecide)
        co_return demoDecide(items, projects);
    std::vector<ReminderDecision> decisions;
    const std::size_t batches = (items.size() + reminderBatchSize - 1) / reminderBatchSize;
    for (std::size_t n = 0; n < batches; ++n) {
        setPhase(fmt::format("Asking AI ({}/{})…", n + 1, batches));
        const std::size_t first = n * reminderBatchSize;
        const std::span batch(items.data() + first, std::min(reminderBatchSize, items.size() - first));
        Json::Array messages{
            Json::Object{{"role", "system"}, {"content", reminderTriagePrompt()}},
            Json::Object{{"role", "user"}, {"content", reminderTriageInput(batch, projects)}},
        };
        const std::string reply = co_await m_ai.completeChat(std::move(messages), answerPatience);
        const std::optional<Json> answer = extractJsonObject(reply);
        if (!answer)
            throw AIServiceError::invalidResponse();
        std::vector<ReminderDecision> more = reminderDecisions(*answer);
        std::move(more.begin(), more.end(), std::back_inserter(decisions));
    }
    setPhase(std::nullopt);
    co_return decisions;
}

Task<ReminderScan> ReminderImportService::scan(std::vector<std::string> lists) {
    std::sort(lists.begin(), lists.end());
    ReminderScan scan{.lists = lists, .rows = {}, .openIDs = {}};
    setPhase("Reading reminders…");
    std::exception_ptr failure;
    try {
        GatheredReminders gathered = co_await gather(std::move(lists));
        scan.openIDs = std::move(gathered.openIDs);
        const std::vector<ReminderItem>& fresh = gathered.reminders.fresh;
        const std::vector<ReminderDecision> decisions = co_await decide(fresh, gathered.projects);
        scan.rows = buildRows(decisions, gathered.openTasks, gathered.projects, fresh);
        std::vector<ReminderImportRow>& known = gathered.reminders.known;
        std::move(known.begin(), known.end(), std::back_inserter(scan.rows));
    } catch (...) {
        failure = std::current_exception();
    }
    setPhase(std::nullopt);
    if (failure)
        std::rethrow_exception(failure);
    std::stable_sort(scan.rows.begin(), scan.rows.end(), [](const ReminderImportRow& a, const ReminderImportRow& b) {
        return a.include != b.include ? a.include : a.reminder.title < b.reminder.title;
    });
    co_return scan;
}

Task<ApplyResult> ReminderImportService::import(std::vector<ReminderImportRow> rows, bool complete, ReminderScan scan) {
    auto wait = [file = lockFile()](const std::stop_token& stop) { return waitForLock(file, stop); };
    const std::optional<FileLock> lock = co_await m_environment.background.run(std::move(wait));
    co_return co_await applyAndRemember(std::move(rows), complete, std::move(scan));
}

/// The caller holds the lock.
Task<ApplyResult> ReminderImportService::applyAndRemember(std::vector<ReminderImportRow> rows, bool complete,
                                                          ReminderScan scan) {
    struct Outcome {
        ApplyResult result;
        std::size_t skipped = 0;
    };
    std::sort(scan.lists.begin(), scan.lists.end());
    auto work = [rows = std::move(rows), complete, scan = std::move(scan), environment = m_environment,
                 container = m_container, memory = m_memory,
                 isDemo = demoReminders.has_value()](const std::stop_token& stop) {
        Outcome outcome;
        if (container && !rows.empty())
            outcome.result = applyRows({*container, *memory, environment.reminders, environment.settings,
                                        environment.clock, environment.calendar, isDemo},
                                       rows, complete, scan.lists, stop);
        if (!stop.stop_requested())
            memory->update([&](ReminderRecords& records) {
                updateSkipped(records.skipped, rows, outcome.result.importedIDs, scan.openIDs, scan.lists,
                              environment.clock.now());
            });
        outcome.skipped = memory->read()->skipped.size();
        return outcome;
    };
    Outcome outcome = co_await m_environment.background.run(std::move(work));
    setSkippedCount(outcome.skipped);
    co_return std::move(outcome.result);
}

Task<> ReminderImportService::recheckSkipped() {
    auto forget = [memory = m_memory](const std::stop_token&) {
        memory->update([](ReminderRecords& records) { records.skipped.clear(); });
    };
    co_await m_environment.background.run(std::move(forget));
    setSkippedCount(0);
}

Task<> ReminderImportService::refresh() {
    auto count = [memory = m_memory](const std::stop_token&) {
        return orNothing([&] { return memory->read()->skipped.size(); });
    };
    setSkippedCount(co_await m_environment.background.run(std::move(count)));
}

void ReminderImportService::setPhase(std::optional<std::string> words) {
    if (m_phase == words)
        return;
    m_phase = std::move(words);
    m_observers.tell();
}

void ReminderImportService::setSkippedCount(std::size_t count) {
    if (std::exchange(m_skippedCount, count) != count)
        m_observers.tell();
}

} // namespace quillorn
