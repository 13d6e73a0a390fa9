#pragma once

#include "Platform/ContentLines.h"
#include "Platform/Date.h"
#include "Platform/TimeZoneDefinition.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class ZoneRules;

/// A file that is no iCalendar text.
class ToDoFileError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// One VTODO of a file.
struct ToDo {
    std::string uid;
    std::string summary;
    std::string description;
    std::optional<Date> due;
    /// Neither completed nor cancelled.
    bool isOpen = true;
    /// Has a rule or dates by which it comes again.
    bool isRecurring = false;
    /// Where its component stands in the text, from the line BEGIN to behind the line END.
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// The to-dos of an iCalendar text, in their order; those that stand in for one occurrence of another (RECURRENCE-ID)
/// are left out. `userZone` is for times without a zone. Throws ToDoFileError for a text whose components don't match.
std::vector<ToDo> readToDos(std::string_view text, const ZoneRules& userZone);

/// `text` with that to-do of it completed at `now`. All but the six properties that tell of it stays, byte for byte.
std::string completeToDo(std::string_view text, const ToDo& todo, Date now);

} // namespace quillorn
