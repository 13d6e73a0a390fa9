#include "Store/RecordedEdit.h"

#include <algorithm>
#include <fmt/core.h>
#include <map>
#include <unordered_map>
#include <utility>

namespace quillorn {

namespace {

SQLValue valueAt(const Statement& row, int place, StorageType storage) {
    if (row.isNull(place))
        return {};
    switch (storage) {
    case StorageType::integer:
        return row.integer(place);
    case StorageType::text:
        return std::string(row.text(place));
    case StorageType::blob:
        break;
    }
    return row.uuid(place);
}

} // namespace

/// Reads and writes the values of objects, whatever their types.
class RecordedEdit::Access {
  public:
    explicit Access(ModelContext& context) : m_context(context) {}

    SQLValue read(const Entity& object, const Column& column) const {
        if (column.target == nullptr) {
            const StatementLoan passage = m_context.statement("SELECT ?1");
            column.bind(object, *passage, 1);
            passage->step();
            return valueAt(*passage, 0, column.storage);
        }
        const ReferenceBase& reference = column.reference(const_cast<Entity&>(object));
        if (reference.m_object != nullptr)
            return reference.m_object->id();
        return idOf(column.target(), reference.m_key);
    }

    /// As the store has it.
    std::vector<SQLValue> stored(const Entity& object) const {
        const EntityType& type = object.type();
        std::vector<SQLValue> values(type.columns.size());
        const StatementLoan row = m_context.statement(type.select + " WHERE key = ?");
        row->bind(1, object.key());
        if (row->step())
            for (std::size_t column = 0; column < values.size(); ++column) {
                const int place = static_cast<int>(column) + 2;
                const auto target = type.columns[column].target;
                values[column] = target == nullptr ? valueAt(*row, place, type.columns[column].storage)
                                                   : idOf(target(), row->isNull(place) ? 0 : row->integer(place));
            }
        return values;
    }

    void write(Entity& object, std::size_t place, const SQLValue& value) {
        const Column& column = object.type().columns[place];
        if (column.target != nullptr) {
            const UUID* id = std::get_if<UUID>(&value);
            object.assignReference(place, column.reference(object),
                                   id != nullptr ? find(column.target(), *id) : nullptr);
            return;
        }
        if (read(object, column) == value)
            return;
        const StatementLoan passage = m_context.statement("SELECT ?1");
        passage->bindValue(1, value);
        passage->step();
        column.read(object, *passage, 0);
        object.markChanged(place);
    }

    Entity* find(const EntityType& type, const UUID& id) {
        const auto made = m_made.find(id);
        return made != m_made.end() ? made->second : m_context.findById(type, id);
    }

    Entity& make(const EntityType& type, const UUID& id) {
        Entity& object = m_context.insertBlank(type);
        object.m_id = id;
        m_made.emplace(id, &object);
        return object;
    }

    const std::vector<Entity*>& list(Entity& object, const ToMany& relation) const {
        ListBase& list = relation.list(object);
        object.load(static_cast<std::size_t>(&relation - object.type().relations.data()), list);
        return list.m_items;
    }

    bool isLinked(Entity& owner, const ToMany& relation, const Entity& other) const {
        const std::vector<Entity*>& members = list(owner, relation);
        return std::ranges::find(members, &other) != members.end();
    }

    void link(Entity& owner, const ToMany& relation, Entity& other, bool wantsLink) const {
        std::vector<Entity*> members = list(owner, relation);
        std::erase(members, &other);
        if (wantsLink)
            members.push_back(&other);
        owner.assignLinks(static_cast<std::size_t>(&relation - owner.type().relations.data()), members);
    }

    void remove(Entity& object) { m_context.remove(object); }

  private:
    SQLValue idOf(const EntityType& type, RowKey key) const {
        if (key == 0)
            return {};
        const Entity* found = m_context.findByKey(type, key);
        return found != nullptr ? SQLValue(found->id()) : SQLValue();
    }

    ModelContext& m_context;
    std::unordered_map<UUID, Entity*> m_made; // not known to the context by their ids before they are saved
};

class RecordedEdit::Recorder {
  public:
    Recorder(ModelContext& context, RecordedEdit& edit) : m_context(context), m_access(context), m_edit(edit) {}

    /// What was changed before and is not saved yet is no part of the edit.
    void begin() {
        for (const Entity* object : m_context.m_changed)
            m_before.emplace(object, values(*object));
        m_inserted = m_context.m_inserted;
        m_removed = m_context.m_removed;
        for (const auto& link : m_context.m_links)
            m_links.emplace_back(link.owner, link.other);
    }

    void end() {
        for (Entity* object : std::vector(m_context.m_changed))
            noteChanged(*object);
        for (Entity* object : std::vector(m_context.m_inserted))
            if (!contains(m_inserted, object))
                note(Row::Kind::inserted, *object, {}, values(*object));
        for (Entity* object : std::vector(m_context.m_removed))
            if (!contains(m_removed, object))
                note(Row::Kind::removed, *object, m_access.stored(*object), {});
        for (const auto& link : m_context.m_links)
            if (std::ranges::find(m_links, std::pair(link.owner, link.other)) == m_links.end())
                m_edit.m_links.push_back(
                    {link.relation, &link.owner->type(), link.owner->id(), link.other->id(), link.linked});
    }

  private:
    static bool contains(const std::vector<Entity*>& objects, const Entity* object) {
        return std::ranges::find(objects, object) != objects.end();
    }

    std::vector<SQLValue> values(const Entity& object) const {
        std::vector<SQLValue> values;
        for (const Column& column : object.type().columns)
            values.push_back(m_access.read(object, column));
        return values;
    }

    void noteChanged(const Entity& object) {
        const auto known = m_before.find(&object);
        note(Row::Kind::changed, object, known != m_before.end() ? known->second : m_access.stored(object),
             values(object));
    }

    void note(Row::Kind kind, const Entity& object, std::vector<SQLValue> before, std::vector<SQLValue> after) {
        Row row{kind, &object.type(), object.id(), {}};
        before.resize(object.type().columns.size());
        after.resize(before.size());
        bool isTouched = kind != Row::Kind::changed;
        for (std::size_t column = 0; column < before.size(); ++column) {
            if (kind == Row::Kind::changed && before[column] == after[column])
                continue;
            isTouched = true;
            row.cells.push_back({column, std::move(before[column]), std::move(after[column])});
        }
        if (isTouched)
            m_edit.m_rows.push_back(std::move(row));
    }

    ModelContext& m_context;
    Access m_access;
    RecordedEdit& m_edit;
    std::map<const Entity*, std::vector<SQLValue>> m_before;
    std::vector<Entity*> m_inserted, m_removed;
    std::vector<std::pair<Entity*, Entity*>> m_links;
};

RecordedEdit RecordedEdit::of(ModelContext& context, std::string_view stampColumn, const std::function<void()>& edit) {
    RecordedEdit recorded;
    recorded.m_stampColumn = stampColumn;
    Recorder recorder(context, recorded);
    recorder.begin();
    try {
        edit();
    } catch (...) {
        recorder.end();
        recorded.apply(context, Way::back, std::nullopt);
        throw;
    }
    recorder.end();
    return recorded;
}

bool RecordedEdit::isEmpty() const {
    const auto isStamp = [this](const Row& row, const Cell& cell) {
        return row.type->columns[cell.column].name == m_stampColumn;
    };
    return m_links.empty() && std::ranges::all_of(m_rows, [&](const Row& row) {
               return row.kind == Row::Kind::changed &&
                      std::ranges::all_of(row.cells, [&](const Cell& cell) { return isStamp(row, cell); });
           });
}

bool RecordedEdit::isReversible() const {
    return std::ranges::none_of(
        m_rows, [](const Row& row) { return row.kind == Row::Kind::removed && !row.type->relations.empty(); });
}

bool RecordedEdit::concerns(const EntityType& type) const {
    return std::ranges::any_of(m_rows, [&](const Row& row) { return row.type == &type; });
}

bool RecordedEdit::removes(const Entity& object, Way way) const {
    return std::ranges::any_of(m_rows, [&](const Row& row) {
        return row.type == &object.type() && row.id == object.id() && !isThere(row, way);
    });
}

std::optional<RecordedEdit::Conflict> RecordedEdit::conflict(ModelContext& context, Way way) const {
    for (const Row& row : m_rows)
        if (const auto found = conflict(context, row, way))
            return found;
    Access access(context);
    for (const Link& link : m_links) {
        Entity* owner = access.find(*link.ownerType, link.owner);
        const Entity* other = access.find(link.relation->target(), link.other);
        if (owner == nullptr && other == nullptr)
            continue; // both come with the edit
        const bool wantsLink = link.isLinked == (way == Way::back);
        const bool isLinked = owner != nullptr && other != nullptr && access.isLinked(*owner, *link.relation, *other);
        if (isLinked != wantsLink)
            return Conflict{Conflict::Kind::changed, link.ownerType, link.owner, link.relation->name};
    }
    return std::nullopt;
}

std::optional<RecordedEdit::Conflict> RecordedEdit::conflict(ModelContext& context, const Row& row, Way way) const {
    Access access(context);
    const Way from = way == Way::back ? Way::forth : Way::back;
    Entity* object = access.find(*row.type, row.id);
    if ((object != nullptr) != isThere(row, from))
        return Conflict{object == nullptr ? Conflict::Kind::missing : Conflict::Kind::changed, row.type, row.id};
    if (object == nullptr)
        return std::nullopt;
    for (const Cell& cell : row.cells) {
        const Column& column = row.type->columns[cell.column];
        if (column.name != m_stampColumn && access.read(*object, column) != value(cell, from))
            return Conflict{Conflict::Kind::changed, row.type, row.id, column.name};
    }
    if (isThere(row, way))
        return std::nullopt;
    for (const ToMany& relation : row.type->relations)
        if (!relation.overLinks() && !std::ranges::all_of(access.list(*object, relation),
                                                          [&](const Entity* member) { return removes(*member, way); }))
            return Conflict{Conflict::Kind::inUse, row.type, row.id, relation.name};
    return std::nullopt;
}

void RecordedEdit::apply(ModelContext& context, Way way, std::optional<Date> stamp) const {
    Access access(context);
    const Way from = way == Way::back ? Way::forth : Way::back;
    for (const Row& row : m_rows)
        if (isThere(row, way) && !isThere(row, from))
            access.make(*row.type, row.id);
    for (const Row& row : m_rows) {
        Entity* object = access.find(*row.type, row.id);
        if (object == nullptr || !isThere(row, way))
            continue;
        for (const Cell& cell : row.cells) {
            const bool isStamp = row.type->columns[cell.column].name == m_stampColumn;
            access.write(*object, cell.column,
                         isStamp && stamp ? SQLValue(std::int64_t{stamp->time_since_epoch().count()})
                                          : value(cell, way));
        }
    }
    for (const Link& link : m_links) {
        Entity* owner = access.find(*link.ownerType, link.owner);
        Entity* other = access.find(link.relation->target(), link.other);
        if (owner != nullptr && other != nullptr)
            access.link(*owner, *link.relation, *other, link.isLinked == (way == Way::forth));
    }
    for (const Row& row : m_rows)
        if (Entity* object = access.find(*row.type, row.id); object != nullptr && !isThere(row, way))
            access.remove(*object);
}

} // namespace quillorn
