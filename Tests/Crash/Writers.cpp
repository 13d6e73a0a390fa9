#include "Crash/Writers.h"

#include "Integration/ServerProcess.h"

#include <csignal>
#include <fmt/core.h>
#include <set>
#include <thread>

namespace quillorn {

namespace {

/// Above that, more is deleted than created.
constexpr std::size_t manyRecords = 60;
/// Made before all else, and kept.
constexpr int tagCount = 3;
/// A stop of the clock for the moment at which a program is killed.
constexpr int longestProgram = 12'000; // microseconds

std::string day(int number, const char* time = "08:30:00") {
    return fmt::format("20{:02}-{:02}-{:02}T{}Z", 10 + number / 336 % 14, 1 + number / 28 % 12, 1 + number % 28, time);
}

std::string evening(int number) {
    return day(number, "17:00:00");
}

} // namespace

void Writer::run(Round& round, Surface& surface) {
    while (true) {
        m_records = m_ledger.records();
        const Step step = nextStep();
        m_ledger.begin({step.operation});
        const Surface::Answer answer = surface.send(step.request);
        switch (answer.kind) {
        case Surface::Answer::Kind::acknowledged:
            m_ledger.acknowledge(answer.id);
            round.totals.overMCP += answer.isOverMCP ? 1 : 0;
            round.noteAcknowledged();
            break;
        case Surface::Answer::Kind::refused:
            m_ledger.withdraw();
            round.fault(fmt::format("{} {}: {}", step.request.verb, step.request.kind, answer.text));
            return;
        case Surface::Answer::Kind::cutOff:
            if (!round.isEnding)
                round.fault(fmt::format("{} {} got no answer", step.request.verb, step.request.kind));
            ++round.totals.cutOff;
            return;
        }
    }
}

Writer::Step Writer::nextStep() {
    const std::string project = some("project"), task = some("task"), note = some("note"), entry = some("time_entry");
    const bool isFull = m_records.size() > manyRecords;
    if (m_made < tagCount)
        return create("tag", "");
    if (project.empty() || m_dice.chance(2))
        return create("project", "");
    if (m_dice.chance(isFull ? 10 : 1))
        return remove(project);
    if (task.empty() || m_dice.chance(isFull ? 5 : 15))
        return create("task", project);
    if (m_dice.chance(isFull ? 15 : 3))
        return remove(task);
    if (m_dice.chance(isFull ? 5 : 20))
        return create("time_entry", task);
    if (note.empty() || m_dice.chance(isFull ? 5 : 10))
        return create("note", project);
    if (m_dice.chance(15))
        return complete(task);
    if (!entry.empty() && m_dice.chance(40)) {
        if (*m_records.at(entry).fields.at("isRunning").asBool() && m_dice.chance(70))
            return stop(entry);
        return m_dice.chance(20) ? remove(entry) : update(entry);
    }
    if (m_dice.chance(30))
        return m_dice.chance(20) ? remove(note) : update(note);
    return update(m_dice.chance(85) ? task : project);
}

std::string Writer::some(const std::string& kind) {
    std::vector<const std::string*> keys;
    for (const auto& [key, record] : m_records)
        if (record.kind == kind)
            keys.push_back(&key);
    return keys.empty() ? std::string() : *m_dice.oneOf(keys);
}

Json::Object Writer::fieldsOf(const std::string& kind, const std::string& key, int revision) {
    const std::string name = fmt::format("{} r{}", key, revision);
    // Now and then a text of many pages, so that the log comes to its checkpoints.
    const std::string text = name + std::string(m_dice.chance(10) ? m_dice.below(30'000) : 10, 'x');
    if (kind == "project")
        return {{"name", name}, {"description", text}, {"color", fmt::format("#{:06X}", revision)}};
    if (kind == "tag")
        return {{"name", name}};
    if (kind == "task") {
        Json::Object fields{
            {"title", name}, {"description", text}, {"priority", revision % 4}, {"dueDate", day(revision)}};
        if (m_dice.chance(50)) // what only the REST API takes
            fields.merge(Json::Object{{"tagIds", someTags()}, {"sourceTitle", name}});
        return fields;
    }
    if (kind == "note")
        return {{"title", name}, {"content", text}};
    return {{"notes", text}, {"startTime", day(revision)}};
}

Json::Array Writer::someTags() {
    std::set<std::string> ids;
    for (const auto& [key, record] : m_records)
        if (record.kind == "tag" && m_dice.chance(50))
            ids.insert(record.id);
    return {ids.begin(), ids.end()};
}

Writer::Step Writer::create(const std::string& kind, const std::string& owner) {
    const std::string key = fmt::format("{}.{}", m_name, ++m_made);
    Json::Object fields = fieldsOf(kind, key, ++m_revision);
    if (kind == "time_entry" && m_dice.chance(50))
        fields["endTime"] = evening(m_revision);
    if (!owner.empty())
        fields[kind == "time_entry" ? "taskId" : "projectId"] = m_records.at(owner).id;
    KnownRecord record{.kind = kind, .id = {}, .owner = owner, .fields = fields};
    if (kind == "task")
        record.fields["status"] = 0;
    else if (kind == "time_entry")
        record.fields["isRunning"] = !fields.contains("endTime");
    return {{"create", kind, "", fields}, {{key, record}}};
}

Writer::Step Writer::update(const std::string& key) {
    KnownRecord record = m_records.at(key);
    Json::Object fields = fieldsOf(record.kind, key, ++m_revision);
    if (record.fields.contains("endTime"))
        fields["endTime"] = evening(m_revision);
    else if (record.kind == "time_entry")
        fields.erase("startTime"); // one that was stopped keeps an end that only the server knows
    for (const auto& [name, value] : fields)
        record.fields[name] = value;
    return {{"update", record.kind, record.id, fields}, {{key, record}}};
}

Writer::Step Writer::remove(const std::string& key) {
    Step step{{"delete", m_records.at(key).kind, m_records.at(key).id, {}}, {{key, std::nullopt}}};
    // Owners are three deep at most: project, task, time entry.
    for (int depth = 0; depth < 2; ++depth)
        for (const auto& [other, record] : m_records)
            if (step.operation.contains(record.owner))
                step.operation[other] = std::nullopt;
    return step;
}

Writer::Step Writer::complete(const std::string& key) {
    KnownRecord record = m_records.at(key);
    const bool isCompleted = record.fields.at("status") == Json(3);
    record.fields["status"] = isCompleted ? 0 : 3;
    record.fields["isCompleted"] = !isCompleted;
    Step step{{isCompleted ? "incomplete" : "complete", "task", record.id, {}}, {{key, record}}};
    // What runs on it ends with it.
    for (const auto& [other, entry] : m_records)
        if (!isCompleted && entry.owner == key) {
            step.operation[other] = entry;
            step.operation[other]->fields["isRunning"] = false;
        }
    return step;
}

Writer::Step Writer::stop(const std::string& key) {
    KnownRecord record = m_records.at(key);
    record.fields["isRunning"] = false;
    return {{"stop", "time_entry", record.id, {}}, {{key, record}}};
}

void TimerUser::prepare(Surface& surface) {
    for (const char* name : {"timer.0", "timer.1"}) {
        const KnownRecord task{.kind = "task", .id = {}, .owner = {}, .fields = {{"title", name}}};
        m_ledger.begin({Operation{{name, task}}});
        m_ledger.acknowledge(surface.send({"create", "task", "", {{"title", name}}}).id);
    }
}

void TimerUser::run(Round& round, Surface& surface) {
    while (!round.isEnding) {
        const std::string task = m_dice.chance(50) ? "timer.0" : "timer.1";
        bool goesOn = false;
        // From rest, the command would end whatever entry of a writer it finds running.
        if (!isRunning())
            goesOn = startOver(task, round, surface);
        else if (m_dice.chance(50))
            goesOn = command({"timer", "stop"}, {stopping()}, round);
        else
            // The end of the former entry is saved before the next one begins.
            goesOn = command({"timer", "start", m_ledger.records().at(task).id}, {stopping(), inProgress(task)}, round);
        if (!goesOn)
            return;
        round.noteAcknowledged();
    }
}

bool TimerUser::startOver(const std::string& task, Round& round, Surface& surface) {
    m_ledger.begin({starting(task)});
    const auto answer = surface.send({"create", "time_entry", "", {{"taskId", m_ledger.records().at(task).id}}});
    if (answer.kind == Surface::Answer::Kind::acknowledged) {
        m_ledger.acknowledge(answer.id);
        return true;
    }
    if (answer.kind == Surface::Answer::Kind::refused || !round.isEnding)
        round.fault("no timer entry: " + answer.text);
    ++round.totals.cutOff;
    return false;
}

bool TimerUser::command(std::vector<std::string> arguments, std::vector<Operation> operations, Round& round) {
    m_ledger.begin(std::move(operations));
    ProgramProcess program(round.home, {.arguments = std::move(arguments)});
    if (m_dice.chance(20)) {
        std::this_thread::sleep_for(std::chrono::microseconds(m_dice.below(longestProgram)));
        program.signal(SIGKILL);
    }
    const int status = program.wait();
    if (status == 0) {
        m_ledger.acknowledge();
        return true;
    }
    if (status == -SIGKILL) {
        ++round.totals.programsKilled;
        ++round.totals.cutOff;
    } else {
        m_ledger.withdraw();
        round.fault("quillorn timer: " + program.errors());
    }
    return false;
}

int TimerUser::last() const {
    int number = -1;
    const KnownRecords records = m_ledger.records();
    while (records.contains(fmt::format("timer#{}", number + 1)))
        ++number;
    return number;
}

bool TimerUser::isRunning() const {
    const auto records = m_ledger.records();
    const auto found = records.find(fmt::format("timer#{}", last()));
    return found != records.end() && *found->second.fields.at("isRunning").asBool();
}

Operation TimerUser::stopping() const {
    const std::string key = fmt::format("timer#{}", last());
    KnownRecord entry = m_ledger.records().at(key);
    entry.fields["isRunning"] = false;
    return {{key, entry}};
}

Operation TimerUser::starting(const std::string& task) const {
    return {{fmt::format("timer#{}", last() + 1),
             KnownRecord{.kind = "time_entry",
                         .id = {},
                         .owner = task,
                         .fields = {{"isRunning", true}, {"taskId", m_ledger.records().at(task).id}}}}};
}

Operation TimerUser::inProgress(const std::string& task) const {
    Operation operation = starting(task);
    KnownRecord on = m_ledger.records().at(task);
    on.fields["status"] = 1;
    operation[task] = on;
    return operation;
}

} // namespace quillorn
