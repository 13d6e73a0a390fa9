#include "Crash/Ledger.h"

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

void apply(const Operation& operation, KnownRecords& records) {
    for (const auto& [key, record] : operation) {
        if (!record) {
            records.erase(key);
            continue;
        }
        KnownRecord& known = records[key];
        const int changes = known.changes;
        known = *record;
        known.changes = changes + 1;
    }
}

std::string textOf(const Json* value) {
    return value != nullptr ? value->text().substr(0, 100) : "nothing";
}

} // namespace

void Ledger::begin(std::vector<Operation> operations) {
    const std::lock_guard lock(m_mutex);
    m_inFlight = std::move(operations);
}

void Ledger::acknowledge(const std::string& id) {
    const std::lock_guard lock(m_mutex);
    for (const Operation& operation : std::exchange(m_inFlight, {})) {
        apply(operation, m_records);
        for (const auto& [key, record] : operation)
            if (record && record->id.empty())
                m_records[key].id = id;
    }
}

void Ledger::withdraw() {
    const std::lock_guard lock(m_mutex);
    m_inFlight.clear();
}

KnownRecords Ledger::records() const {
    const std::lock_guard lock(m_mutex);
    return m_records;
}

void Ledger::goBackTo(KnownRecords records) {
    const std::lock_guard lock(m_mutex);
    m_records = std::move(records);
    m_inFlight.clear();
}

Ledger::Finding Ledger::check(const ListedRecords& listed) {
    const std::lock_guard lock(m_mutex);
    Finding finding{.faults = differences(m_records, listed)};
    KnownRecords changed = m_records;
    for (const Operation& operation : std::exchange(m_inFlight, {})) {
        apply(operation, changed);
        if (!differences(changed, listed).empty())
            continue;
        finding = {.faults = {}, .happened = true};
        m_records = changed;
    }
    for (auto& [key, record] : m_records)
        if (const auto found = listed.find(key); record.id.empty() && found != listed.end())
            record.id = *found->second.find("id")->asString();
    return finding;
}

KnownRecords Ledger::untouchedSince(const KnownRecords& before) const {
    const std::lock_guard lock(m_mutex);
    KnownRecords untouched;
    for (const auto& [key, record] : before) {
        const auto now = m_records.find(key);
        const bool isInFlight = std::any_of(m_inFlight.begin(), m_inFlight.end(),
                                            [&](const Operation& operation) { return operation.contains(key); });
        if (now != m_records.end() && now->second.changes == record.changes && !isInFlight)
            untouched.emplace(key, record);
    }
    return untouched;
}

std::vector<std::string> differences(const KnownRecords& records, const ListedRecords& listed, bool mayHaveMore) {
    std::vector<std::string> found;
    for (const auto& [key, record] : records) {
        const auto there = listed.find(key);
        if (there == listed.end()) {
            found.push_back(record.kind + " " + key + " is lost");
            continue;
        }
        for (const auto& [name, value] : record.fields)
            if (const Json* field = there->second.find(name); field == nullptr || *field != value)
                found.push_back(record.kind + " " + key + ": " + name + " is " + textOf(field) + " instead of " +
                                textOf(&value));
    }
    if (!mayHaveMore)
        for (const auto& [key, record] : listed)
            if (!records.contains(key))
                found.push_back(key + " is there and should not be: " + textOf(&record));
    return found;
}

} // namespace quillorn
