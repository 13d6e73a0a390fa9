#pragma once

#include "Reminders/ReminderTriage.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace quillorn {

class Json;

/// Rows that can't be understood; says which, and why.
class ReminderRowError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A review, as programs read and write it.
struct ReminderRows {
    std::vector<std::string> lists;
    std::vector<ReminderImportRow> rows;
};

Json jsonOf(const ReminderRows& rows);
/// Throws ReminderRowError for unknown keys, wrong types, and two rows of one reminder. Of a row "reminder" with its
/// "id", "title" and "include" must be there.
ReminderRows readReminderRows(const Json& json);

/// Puts the reminders as they are now in the place of those that the rows hold. Throws ReminderRowError for rows of
/// reminders that are not among them.
void bindRows(std::vector<ReminderImportRow>& rows, const std::vector<ReminderItem>& open);

} // namespace quillorn
