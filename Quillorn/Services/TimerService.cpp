#include "Services/TimerService.h"

#include "Models/ProjectTask.h"
#include "Models/TaskActions.h"
#include "Models/TimeEntry.h"
#include "Platform/Clock.h"
#include "Store/StoreError.h"

#include <any>

namespace quillorn {

namespace {

void saveQuietly(ModelContext& context) {
    try {
        context.save();
    } catch (const StoreError&) {
        // The change stays in the context, for its next save.
    }
}

} // namespace

TimerService::TimerService(NotificationCenter& notifications, MainQueue& queue, const Clock& clock)
    : m_queue(queue),
      m_clock(clock) {
    m_completionObserver = notifications.observe(
        quillornTaskCompleted,
        [this](const Notification& notification) {
            const auto found = notification.userInfo.find("taskId");
            const UUID* task = found != notification.userInfo.end() ? std::any_cast<UUID>(&found->second) : nullptr;
            // The completion has ended the entry by itself.
            if (task != nullptr && m_running && m_running->task == *task)
                reset();
        },
        &queue);
}

TimerService::~TimerService() {
    if (m_timer)
        m_queue.cancel(*m_timer);
}

std::optional<Date> TimerService::startTime() const {
    return m_running ? std::optional(m_running->startTime) : std::nullopt;
}

TimeEntry* TimerService::activeEntry(ModelContext& context) const {
    return m_running ? context.find<TimeEntry>(m_running->entry) : nullptr;
}

ProjectTask* TimerService::activeTask(ModelContext& context) const {
    return m_running && m_running->task ? context.find<ProjectTask>(*m_running->task) : nullptr;
}

bool TimerService::isActive(const ProjectTask& task) const {
    return m_running && m_running->task == task.id();
}

void TimerService::start(ProjectTask& task, ModelContext& context) {
    if (isRunning())
        stop(context);
    const Date now = m_clock.now();
    const auto& entry = context.insert<TimeEntry>(TimeEntry::Arguments{.task = &task, .startTime = now});
    startWork(task, now);
    takeUp(entry);
}

void TimerService::stop(ModelContext& context) {
    TimeEntry* entry = activeEntry(context);
    if (entry != nullptr && entry->isRunning())
        entry->setEndTime(m_clock.now());
    saveQuietly(context);
    reset();
}

void TimerService::toggle(ProjectTask& task, ModelContext& context) {
    if (isActive(task))
        stop(context);
    else
        start(task, context);
}

void TimerService::adjustStart(Date date, ModelContext& context) {
    TimeEntry* entry = activeEntry(context);
    if (entry == nullptr || !entry->isRunning())
        return;
    entry->setStartTime(date);
    m_running->startTime = date;
    tick();
    saveQuietly(context);
}

void TimerService::resumeRunningEntry(ModelContext& context) {
    m_seen.clear();
    takeUpUnseenEntry(context);
}

void TimerService::storeDidChange(const ChangeSet& changes, ModelContext& context) {
    followActiveEntry(context);
    for (const ChangeSet::Row& row : changes.rows)
        if (row.type == &TimeEntry::entityType() && row.change == RowChange::inserted && !row.isOfOthers)
            m_seen.insert(row.key);
    if (changes.includesOthers())
        takeUpUnseenEntry(context);
}

void TimerService::followActiveEntry(ModelContext& context) {
    if (!m_running)
        return;
    const TimeEntry* entry = activeEntry(context);
    if (entry == nullptr || !entry->isRunning()) {
        reset();
        return;
    }
    const ProjectTask* task = entry->task();
    m_running->task = task != nullptr ? std::optional(task->id()) : std::nullopt;
    m_running->startTime = entry->startTime();
    tick();
}

void TimerService::takeUpUnseenEntry(ModelContext& context) {
    const auto running = context.fetch<TimeEntry>({.where = "endTime IS NULL", .order = "startTime DESC, key DESC"});
    std::unordered_set<RowKey> keys;
    for (const TimeEntry* entry : running) {
        // One that has got its end here counts as ended, though that is not saved yet.
        if (!m_running && entry->isRunning() && !m_seen.contains(entry->key()))
            takeUp(*entry);
        keys.insert(entry->key());
    }
    m_seen = std::move(keys);
}

void TimerService::takeUp(const TimeEntry& entry) {
    const ProjectTask* task = entry.task();
    m_running = Running{entry.id(), task != nullptr ? std::optional(task->id()) : std::nullopt, entry.startTime()};
    if (!m_timer)
        m_timer = m_queue.every(std::chrono::seconds(1), [this] { tick(); });
    // Anew from the start each time, so that a machine that slept leaves no error.
    m_elapsedTime = secondsBetween(m_running->startTime, m_clock.now());
    changed();
}

void TimerService::tick() {
    if (!m_running)
        return;
    const double elapsed = secondsBetween(m_running->startTime, m_clock.now());
    if (elapsed == m_elapsedTime)
        return;
    m_elapsedTime = elapsed;
    changed();
}

void TimerService::reset() {
    if (m_timer)
        m_queue.cancel(*m_timer);
    m_timer.reset();
    m_running.reset();
    m_elapsedTime = 0;
    changed();
}

void TimerService::changed() const {
    if (onChange)
        onChange();
}

} // namespace quillorn
