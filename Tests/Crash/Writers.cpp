#include "Crash/Writers.h"

#include "Integration/ServerProcess.h"

#include <fmt/core.h>
#include <set>

namespace quillorn {

namespace {

/// Above that, more is deleted than created.
constexpr std::size_t manyRecords = 60;
/// Made before all else, and kept.
constexpr int tagCount = 3;

std::string day(int number, const char* time = "08:30:00") {
    return fmt::format("20{:02}-{:02}-{:02}T{}Z", 10 + number / 336 % 14, 1 + number / 28 % 12, 1 + number % 28, time);
}

std::string evening(int number) {
    return day(number, "17:00:00");
}

} // namespace

void Writer::run(Round& round, std::uint16_t port) {
    while (true) {
        const Step step = nextStep();
        m_ledger.begin(step.operation);
        const Answer answer = send(port, step.request);
        const std::string what = step.request.verb + " " + step.request.kind;
        switch (answer.kind) {
        case Answer::Kind::acknowledged:
            m_ledger.acknowledge(answer.id);
            round.noteAcknowledged();
            break;
        case Answer::Kind::refused:
            round.fault(what + ": " + answer.text);
            return;
        case Answer::Kind::cutOff:
            if (!round.isEnding)
                round.fault(what + " got no answer");
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

} // namespace quillorn
