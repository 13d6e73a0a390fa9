#pragma once

#include "Platform/Json.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quillorn {

/// A record as the API lists it, in so far as its writer knows it.
struct KnownRecord {
    std::string kind;  // "task", …
    std::string id;    // empty until a list or an answer has told it
    std::string owner; // the key of what takes it along when it is deleted
    Json::Object fields{};
};

/// By the key that its writer has given it: the first word of its name.
using KnownRecords = std::map<std::string, KnownRecord>;

/// What one operation makes of some records; absent means that they are gone. It happens as a whole or not at all.
using Operation = std::map<std::string, std::optional<KnownRecord>>;

/// A list as the server gave it, by key.
using ListedRecords = std::map<std::string, Json>;

/// What one writer knows that the store must hold. An operation is first begun, then acknowledged; of one that was
/// begun and not acknowledged nobody knows whether it has happened.
class Ledger {
  public:
    void begin(Operation operation) { m_inFlight = std::move(operation); }
    /// `id` is that of a record that the operation has made.
    void acknowledge(const std::string& id = {});
    const KnownRecords& records() const { return m_records; }
    /// Everything was replaced by an earlier state.
    void goBackTo(KnownRecords records) { m_records = std::move(records); }

    struct Finding {
        std::vector<std::string> faults;
        /// Whether something has happened that was not acknowledged.
        bool happened = false;
    };
    /// Compares with what is there. Takes over what became of the operation in flight.
    Finding check(const ListedRecords& listed);

  private:
    KnownRecords m_records;
    Operation m_inFlight;
};

/// In what the list differs from the records.
std::vector<std::string> differences(const KnownRecords& records, const ListedRecords& listed);

} // namespace quillorn
