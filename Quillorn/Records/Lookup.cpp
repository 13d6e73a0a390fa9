#include "Records/Lookup.h"

#include "Models/Tag.h"
#include "Platform/Json.h"

#include <utility>

namespace quillorn {

RecordNotFound::RecordNotFound(std::string resource, const UUID& id)
    : std::runtime_error(resource + " with id " + id.string() + " not found"),
      m_resource(std::move(resource)),
      m_id(id) {}

std::vector<Tag*> findTags(ModelContext& context, const std::vector<UUID>& ids) {
    if (ids.empty())
        return {};
    // One parameter whatever the number of ids: SQLite limits that of parameters, and a client sends what it likes.
    Json::Array digits;
    for (const UUID& id : ids) {
        std::string text = id.string();
        std::erase(text, '-');
        digits.emplace_back(std::move(text));
    }
    return context.fetch<Tag>(
        {.where = "hex(id) IN (SELECT value FROM json_each(?))", .values = {Json(std::move(digits)).text()}});
}

} // namespace quillorn
