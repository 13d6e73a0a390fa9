#pragma once

#include "Records/ClientDTO.h"
#include "Records/NoteDTO.h"
#include "Records/ProjectDTO.h"
#include "Records/TaskDTO.h"

#include <optional>
#include <string>
#include <vector>

// What the documents of the resources are made of. They are only ever written.

namespace quillorn {

/// Written as null where it is absent.
template <class Value>
struct Nullable : std::optional<Value> {
    using std::optional<Value>::optional;
    using std::optional<Value>::operator=;
};

/// A record of the REST API whose absent fields are written as null.
template <class Record>
struct Item {
    Record record;
};
template <class Record>
using Items = std::vector<Item<Record>>;

template <class Value>
struct WireForm<Nullable<Value>> {
    static constexpr WireShape shape = WireForm<Value>::shape;
    static void write(JsonWriter& writer, const Nullable<Value>& value) {
        if (value)
            WireForm<Value>::write(writer, *value);
        else
            writer.null();
    }
    static bool read(const Json&, Nullable<Value>&) { return false; } // only ever written
};

template <class Record>
struct WireForm<Item<Record>> {
    static constexpr WireShape shape = WireForm<Record>::shape;
    static void write(JsonWriter& writer, const Item<Record>& item) {
        writeRecord(writer, Record::recordType(), &item.record, AbsentField::null);
    }
    static bool read(const Json&, Item<Record>&) { return false; } // only ever written
};

struct TimeEntryItem {
    UUID id;
    Date startTime;
    Nullable<Date> endTime;
    double duration = 0;
    std::string durationFormatted;
    Nullable<UUID> taskId;
    Nullable<std::string> taskTitle;
    Nullable<UUID> projectId;
    Nullable<std::string> projectName;
    Nullable<std::string> notes;

    static const RecordType& recordType();
};

struct OverviewStats {
    std::int64_t totalClients = 0;
    std::int64_t activeClients = 0;
    std::int64_t totalProjects = 0;
    std::int64_t activeProjects = 0;
    std::int64_t totalTasks = 0;
    std::int64_t completedTasks = 0;
    std::int64_t activeTasks = 0;
    double totalTimeTrackedSeconds = 0;
    std::string totalTimeTrackedFormatted;

    static const RecordType& recordType();
};

struct OverviewDocument {
    OverviewStats stats;
    Items<ClientDTO> clients;
    Items<ProjectDTO> projects;

    static const RecordType& recordType();
};

struct TodaySummary {
    std::int64_t dueToday = 0;
    std::int64_t overdue = 0;
    std::int64_t runningTimers = 0;

    static const RecordType& recordType();
};

struct TodayDocument {
    Date date;
    Items<TaskDTO> tasksDueToday;
    Items<TaskDTO> overdueTasks;
    std::vector<TimeEntryItem> runningTimers;
    TodaySummary summary;

    static const RecordType& recordType();
};

struct OverdueDocument {
    Items<TaskDTO> overdueTasks;
    std::int64_t count = 0;

    static const RecordType& recordType();
};

struct RunningTimersDocument {
    std::vector<TimeEntryItem> runningTimers;
    std::int64_t count = 0;

    static const RecordType& recordType();
};

struct PinnedNotesDocument {
    Items<NoteDTO> pinnedNotes;
    std::int64_t count = 0;

    static const RecordType& recordType();
};

struct ClientName {
    UUID id;
    std::string name;

    static const RecordType& recordType();
};

struct ProjectStats {
    std::int64_t totalTasks = 0;
    std::int64_t completedTasks = 0;
    std::int64_t activeTasks = 0;
    std::int64_t overdueTasks = 0;
    std::int64_t noteCount = 0;
    double totalTimeSeconds = 0;
    std::string totalTimeFormatted;

    static const RecordType& recordType();
};

struct ProjectDocument {
    Item<ProjectDTO> project;
    Nullable<ClientName> client;
    Items<TaskDTO> tasks;
    Items<NoteDTO> notes;
    std::vector<TimeEntryItem> timeEntries;
    ProjectStats stats;

    static const RecordType& recordType();
};

} // namespace quillorn
