#include "MCP/ResourceRecords.h"

namespace quillorn {

const RecordType& TimeEntryItem::recordType() {
    static constexpr auto fields = wireFields<TimeEntryItem>(
        wireField<&TimeEntryItem::id>("id"), wireField<&TimeEntryItem::startTime>("startTime"),
        wireField<&TimeEntryItem::endTime>("endTime"), wireField<&TimeEntryItem::duration>("duration"),
        wireField<&TimeEntryItem::durationFormatted>("durationFormatted"), wireField<&TimeEntryItem::taskId>("taskId"),
        wireField<&TimeEntryItem::taskTitle>("taskTitle"), wireField<&TimeEntryItem::projectId>("projectId"),
        wireField<&TimeEntryItem::projectName>("projectName"), wireField<&TimeEntryItem::notes>("notes"));
    static constexpr RecordType type{"TimeEntryItem", fields};
    return type;
}

const RecordType& OverviewStats::recordType() {
    static constexpr auto fields =
        wireFields<OverviewStats>(wireField<&OverviewStats::totalClients>("totalClients"),
                                  wireField<&OverviewStats::activeClients>("activeClients"),
                                  wireField<&OverviewStats::totalProjects>("totalProjects"),
                                  wireField<&OverviewStats::activeProjects>("activeProjects"),
                                  wireField<&OverviewStats::totalTasks>("totalTasks"),
                                  wireField<&OverviewStats::completedTasks>("completedTasks"),
                                  wireField<&OverviewStats::activeTasks>("activeTasks"),
                                  wireField<&OverviewStats::totalTimeTrackedSeconds>("totalTimeTrackedSeconds"),
                                  wireField<&OverviewStats::totalTimeTrackedFormatted>("totalTimeTrackedFormatted"));
    static constexpr RecordType type{"OverviewStats", fields};
    return type;
}

const RecordType& OverviewDocument::recordType() {
    static constexpr auto fields = wireFields<OverviewDocument>(wireField<&OverviewDocument::stats>("stats"),
                                                                wireField<&OverviewDocument::clients>("clients"),
                                                                wireField<&OverviewDocument::projects>("projects"));
    static constexpr RecordType type{"OverviewDocument", fields};
    return type;
}

const RecordType& TodaySummary::recordType() {
    static constexpr auto fields = wireFields<TodaySummary>(wireField<&TodaySummary::dueToday>("dueToday"),
                                                            wireField<&TodaySummary::overdue>("overdue"),
                                                            wireField<&TodaySummary::runningTimers>("runningTimers"));
    static constexpr RecordType type{"TodaySummary", fields};
    return type;
}

const RecordType& TodayDocument::recordType() {
    static constexpr auto fields = wireFields<TodayDocument>(
        wireField<&TodayDocument::date>("date"), wireField<&TodayDocument::tasksDueToday>("tasksDueToday"),
        wireField<&TodayDocument::overdueTasks>("overdueTasks"),
        wireField<&TodayDocument::runningTimers>("runningTimers"), wireField<&TodayDocument::summary>("summary"));
    static constexpr RecordType type{"TodayDocument", fields};
    return type;
}

const RecordType& OverdueDocument::recordType() {
    static constexpr auto fields = wireFields<OverdueDocument>(
        wireField<&OverdueDocument::overdueTasks>("overdueTasks"), wireField<&OverdueDocument::count>("count"));
    static constexpr RecordType type{"OverdueDocument", fields};
    return type;
}

const RecordType& RunningTimersDocument::recordType() {
    static constexpr auto fields =
        wireFields<RunningTimersDocument>(wireField<&RunningTimersDocument::runningTimers>("runningTimers"),
                                          wireField<&RunningTimersDocument::count>("count"));
    static constexpr RecordType type{"RunningTimersDocument", fields};
    return type;
}

const RecordType& PinnedNotesDocument::recordType() {
    static constexpr auto fields = wireFields<PinnedNotesDocument>(
        wireField<&PinnedNotesDocument::pinnedNotes>("pinnedNotes"), wireField<&PinnedNotesDocument::count>("count"));
    static constexpr RecordType type{"PinnedNotesDocument", fields};
    return type;
}

const RecordType& ClientName::recordType() {
    static constexpr auto fields =
        wireFields<ClientName>(wireField<&ClientName::id>("id"), wireField<&ClientName::name>("name"));
    static constexpr RecordType type{"ClientName", fields};
    return type;
}

const RecordType& ProjectStats::recordType() {
    static constexpr auto fields = wireFields<ProjectStats>(
        wireField<&ProjectStats::totalTasks>("totalTasks"), wireField<&ProjectStats::completedTasks>("completedTasks"),
        wireField<&ProjectStats::activeTasks>("activeTasks"), wireField<&ProjectStats::overdueTasks>("overdueTasks"),
        wireField<&ProjectStats::noteCount>("noteCount"),
        wireField<&ProjectStats::totalTimeSeconds>("totalTimeSeconds"),
        wireField<&ProjectStats::totalTimeFormatted>("totalTimeFormatted"));
    static constexpr RecordType type{"ProjectStats", fields};
    return type;
}

const RecordType& ProjectDocument::recordType() {
    static constexpr auto fields = wireFields<ProjectDocument>(
        wireField<&ProjectDocument::project>("project"), wireField<&ProjectDocument::client>("client"),
        wireField<&ProjectDocument::tasks>("tasks"), wireField<&ProjectDocument::notes>("notes"),
        wireField<&ProjectDocument::timeEntries>("timeEntries"), wireField<&ProjectDocument::stats>("stats"));
    static constexpr RecordType type{"ProjectDocument", fields};
    return type;
}

} // namespace quillorn
