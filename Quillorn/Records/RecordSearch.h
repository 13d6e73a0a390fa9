#pragma once

#include "Platform/UUID.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class ModelContext;
class Text;

/// A record that has a text, and the line in which it stands.
struct FoundRecord {
    enum class Kind { client, project, task, comment, note, timeEntry };

    Kind kind{};
    UUID id;
    std::string title;
    std::string text;
};
/// "client", "timeEntry" and so on.
std::string_view nameOf(FoundRecord::Kind kind);

/// Every record that has `part` in one of its texts, case ignored, archived ones among them; kind by kind, in the order
/// in which they were made. Nothing where there is no part.
std::vector<FoundRecord> searchRecords(ModelContext& context, std::string_view part, const Text& text);

} // namespace quillorn
