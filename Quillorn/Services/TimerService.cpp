#include "Services/TimerService.h"

#include "Models/ProjectTask.h"
#include "Models/TaskActions.h"
#include "Models/TimeEntry.h"
#include "Platform/Clock.h"
#include "Store/StoreError.h"

#include <utility>

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

TimerService::TimerService(MainQueue& queue, const Clock& clock) : m_queue(queue), m_clock(clock) {}

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
    const Date now = m_clock.now();
    endActiveEntry(context, now);
    const auto& entry = context.insert<TimeEntry>(TimeEntry::Arguments{.task = &task, .startTime = now});
    startWork(task, now);
    takeUp(entry);
}

void TimerService::endActiveEntry(ModelContext& context, Date now) const {
    TimeEntry* entry = activeEntry(context);
    if (entry != nullptr && entry->isRunning())
        entry->setEndTime(now);
}

void TimerService::stop(ModelContext& context) {
    endActiveEntry(context, m_clock.now());
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
    // The inner query reads an index alone, a tenth of the table.
    takeUpLatest(context.fetch<TimeEntry>({.where = "key IN (SELECT key FROM TimeEntry WHERE endTime IS NULL)"}));
}

void TimerService::storeDidChange(const ChangeSet& changes, ModelContext& context) {
    followActiveEntry(context);
    if (m_running)
        return;
    if (changes.isEverything)
        return resumeRunningEntry(context);
    std::vector<TimeEntry*> begun;
    for (const ChangeSet::Row& row : changes.rows)
        if (row.type == &TimeEntry::entityType() && row.change == RowChange::inserted && row.isOfOthers)
            if (auto* entry = context.find<TimeEntry>(row.key))
                begun.push_back(entry);
    takeUpLatest(begun);
}

/// Of those that run; of two that began at once, the one that was made later.
void TimerService::takeUpLatest(const std::vector<TimeEntry*>& entries) {
    const TimeEntry* latest = nullptr;
    const auto order = [](const TimeEntry& entry) { return std::pair(entry.startTime(), entry.key()); };
    for (const TimeEntry* entry : entries)
        // One that has got its end here counts as ended, though that is not saved yet.
        if (entry->isRunning() && (latest == nullptr || order(*latest) < order(*entry)))
            latest = entry;
    if (latest != nullptr)
        takeUp(*latest);
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

void TimerService::takeUp(const TimeEntry& entry) {
    const ProjectTask* task = entry.task();
    m_running = Running{entry.id(), task != nullptr ? std::optional(task->id()) : std::nullopt, entry.startTime()};
    if (!m_timer)
        m_timer = m_queue.every(std::chrono::seconds(1), [this] { tick(); });
    // Anew from the start each time, so that a machine that slept leaves no error.
    m_elapsedTime = secondsBetween(m_running->startTime, m_clock.now());
    m_observers.tell();
}

void TimerService::tick() {
    if (!m_running)
        return;
    const double elapsed = secondsBetween(m_running->startTime, m_clock.now());
    if (elapsed == m_elapsedTime)
        return;
    m_elapsedTime = elapsed;
    m_observers.tell();
}

void TimerService::reset() {
    if (m_timer)
        m_queue.cancel(*m_timer);
    m_timer.reset();
    m_running.reset();
    m_elapsedTime = 0;
    m_observers.tell();
}

} // namespace quillorn
