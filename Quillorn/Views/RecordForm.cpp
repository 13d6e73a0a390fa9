#include "Views/RecordForm.h"

#include "Models/ClientSearch.h"
#include "Models/Project.h"
#include "Models/ProjectSearch.h"
#include "Models/Sorting.h"
#include "Models/Tag.h"
#include "Models/TagSearch.h"
#include "Records/Lookup.h"
#include "Store/MainContext.h"
#include "Views/EditHistory.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

/// `records`, and the chosen one among them also where it is archived.
template <class Type>
std::vector<FormChoice> choices(const ViewEnvironment& environment, std::vector<Type*> records,
                                const std::optional<UUID>& chosen) {
    if (Type* record = chosen ? environment.main.context().find<Type>(*chosen) : nullptr;
        record != nullptr && std::ranges::find(records, record) == records.end()) {
        records.push_back(record);
        sortByName(records, environment.text);
    }
    std::vector<FormChoice> rows;
    rows.reserve(records.size());
    for (const Type* each : records)
        rows.push_back({each->id(), each->name(), each->color()});
    return rows;
}

} // namespace

std::string wasDeleted(const RecordNotFound& gone) {
    return gone.resource() + " was deleted meanwhile";
}

ModelContext& RecordFormBase::context() const {
    return m_environment.main.context();
}

std::string RecordFormBase::windowTitle() const {
    return fmt::format("{} {}", isNew() ? "New" : "Edit", m_noun);
}

std::optional<UUID> RecordFormBase::save() {
    if (!canSave())
        return std::nullopt;
    if (!isNew() && !isChanged())
        return m_record;
    std::optional<UUID> saved;
    m_error.clear();
    try {
        m_environment.history.perform(fmt::format("{} {}", isNew() ? "Add" : "Edit", m_noun),
                                      [&](ModelContext& context, Date now) { saved = write(context, now); });
    } catch (const RecordNotFound& gone) {
        m_error = wasDeleted(gone);
        saved.reset();
    } catch (const std::exception& error) {
        m_error = error.what();
        saved.reset();
    }
    tell();
    return saved;
}

std::vector<FormChoice> clientChoices(const ViewEnvironment& environment, const std::optional<UUID>& chosen) {
    return choices(environment, findClients(environment.main.context(), {}, environment.text), chosen);
}

std::vector<FormChoice> projectChoices(const ViewEnvironment& environment, const std::optional<UUID>& chosen) {
    return choices(environment, findProjects(environment.main.context(), {}, environment.text), chosen);
}

std::vector<FormChoice> tagChoices(const ViewEnvironment& environment) {
    return choices(environment, findTags(environment.main.context(), TagSearch{}, environment.text), std::nullopt);
}

} // namespace quillorn
