#include "Crash/Ledger.h"

#include <utility>

namespace quillorn {

namespace {

void apply(const Operation& operation, KnownRecords& records) {
    for (const auto& [key, record] : operation) {
        if (record)
            records[key] = *record;
        else
            records.erase(key);
    }
}

std::string textOf(const Json* value) {
    return value != nullptr ? value->text().substr(0, 100) : "nothing";
}

} // namespace

void Ledger::acknowledge(const std::string& id) {
    const Operation operation = std::exchange(m_inFlight, {});
    apply(operation, m_records);
    for (const auto& [key, record] : operation)
        if (record && record->id.empty())
            m_records[key].id = id;
}

Ledger::Finding Ledger::check(const ListedRecords& listed) {
    Finding finding{.faults = differences(m_records, listed)};
    const Operation inFlight = std::exchange(m_inFlight, {});
    KnownRecords changed = m_records;
    apply(inFlight, changed);
    if (!inFlight.empty() && differences(changed, listed).empty()) {
        finding = {.faults = {}, .happened = true};
        m_records = changed;
    }
    for (auto& [key, record] : m_records)
        if (const auto found = listed.find(key); record.id.empty() && found != listed.end())
            record.id = *found->second.find("id")->asString();
    return finding;
}

std::vector<std::string> differences(const KnownRecords& records, const ListedRecords& listed) {
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
    for (const auto& [key, record] : listed)
        if (!records.contains(key))
            found.push_back(key + " is there and should not be: " + textOf(&record));
    return found;
}

} // namespace quillorn
