#include "Store/ObservedQuery.h"

#include "Store/KeyCondition.h"
#include "Store/StoreError.h"

#include <algorithm>
#include <fmt/core.h>
#include <iterator>

namespace quillorn {

namespace {

/// Beyond that many keys it is faster to read everything.
constexpr std::size_t mostKeys = 1000;
/// Beyond that many steps a list is faster to show anew.
constexpr std::size_t mostSteps = 64;

std::size_t placeOf(const std::vector<Entity*>& objects, const Entity* object) {
    return static_cast<std::size_t>(std::ranges::find(objects, object) - objects.begin());
}

auto iteratorAt(std::vector<Entity*>& objects, std::size_t place) {
    return objects.begin() + static_cast<std::ptrdiff_t>(place);
}

} // namespace

ConditionFollower::ConditionFollower(MainContext& main, const EntityType& type, ObservedCondition condition)
    : m_main(main),
      m_type(type),
      m_condition(std::move(condition)) {}

std::optional<std::vector<RowKey>> ConditionFollower::affected(const ChangeSet& changes) const {
    if (changes.isEverything)
        return std::nullopt;
    const auto changedOf = [&](const EntityType& type) {
        std::vector<RowKey> keys;
        for (const ChangeSet::Row& row : changes.rows)
            if (row.type == &type)
                keys.push_back(row.key);
        return keys;
    };
    std::vector<RowKey> keys = changedOf(m_type);
    for (const auto& dependency : m_condition.dependencies) {
        const std::vector<RowKey> changed = changedOf(*dependency.type);
        if (changed.empty())
            continue;
        if (dependency.rows.empty() || changed.size() > mostKeys)
            return std::nullopt;
        follow(dependency, changed, keys);
    }
    std::ranges::sort(keys);
    keys.erase(std::ranges::unique(keys).begin(), keys.end());
    return keys.size() > mostKeys ? std::nullopt : std::optional(std::move(keys));
}

void ConditionFollower::follow(const ObservedCondition::Dependency& dependency, const std::vector<RowKey>& changed,
                               std::vector<RowKey>& keys) const {
    const StatementLoan rows = m_main.context().statement(
        fmt::format("WITH changed(key) AS (SELECT value FROM json_each(?)) SELECT key FROM \"{}\" WHERE {}",
                    m_type.name, dependency.rows));
    rows->bind(1, std::string_view(keyList(changed)));
    while (rows->step())
        keys.push_back(rows->integer(0));
}

Query ConditionFollower::query(const std::vector<RowKey>& keys) const {
    Query query = this->query();
    if (!query.where.empty())
        query.where = "(" + query.where + ") AND ";
    query.where += keys.size() == 1 ? "key = ?" : "key IN (SELECT value FROM json_each(?))";
    query.values.push_back(keys.size() == 1 ? SQLValue(keys.front()) : SQLValue(keyList(keys)));
    return query;
}

ObservedRows::ObservedRows(MainContext& main, const EntityType& type, ObservedCondition condition, Before before)
    : m_follower(main, type, std::move(condition)),
      m_before(std::move(before)) {
    load();
    m_reading = main.m_readers.add([this](const ChangeSet& changes) { read(changes); });
    m_showing = main.m_showers.add([this] { show(); });
}

ObservedRows::~ObservedRows() {
    for (Entity* object : m_rows)
        --object->m_holds;
}

void ObservedRows::assign(ObservedCondition condition, Before before) {
    m_follower.assign(std::move(condition));
    m_before = std::move(before);
    m_isStale = true;
    load();
}

void ObservedRows::load() {
    try {
        read({});
    } catch (const StoreError&) {
        m_follower.main().retryLook();
        return;
    }
    show();
}

bool ObservedRows::isBefore(const Entity* a, const Entity* b) const {
    if (m_before) {
        if (m_before(*a, *b))
            return true;
        if (m_before(*b, *a))
            return false;
    }
    return a->key() < b->key();
}

void ObservedRows::read(const ChangeSet& changes) {
    m_found.reset();
    const auto isEarlier = [this](const Entity* a, const Entity* b) { return isBefore(a, b); };
    const auto keys = m_isStale ? std::nullopt : m_follower.affected(changes);
    if (!keys) {
        m_isStale = true; // until it is shown: what fails on the way is read again
        m_found = Found{.isEverything = true, .matching = fetch(m_follower.query())};
    } else if (!keys->empty()) {
        m_found = Found{.affected = shown(*keys), .matching = fetch(m_follower.query(*keys))};
        addUnsavedRows(*m_found);
    }
    if (m_found)
        std::ranges::sort(m_found->matching, isEarlier);
}

ObservedRows::Objects ObservedRows::fetch(const Query& query) const {
    Objects objects;
    m_follower.main().context().fetchInto(m_follower.type(), query,
                                          [&](Entity& object) { objects.push_back(&object); });
    return objects;
}

ObservedRows::Objects ObservedRows::shown(const std::vector<RowKey>& keys) const {
    Objects objects;
    const auto& registry = m_follower.main().context().registryOf(m_follower.type());
    for (const RowKey key : keys)
        if (Entity* const* known = registry.byKey.find(key))
            if ((*known)->m_holds > 0 && placeOf(m_rows, *known) < m_rows.size())
                objects.push_back(*known);
    return objects;
}

/// Rows with changes that are not saved yet may stand where they don't belong, so that no place could be found by them.
void ObservedRows::addUnsavedRows(Found& found) const {
    for (Entity* object : m_follower.main().context().m_changed) {
        if (object->m_type != &m_follower.type() || std::ranges::find(found.matching, object) != found.matching.end() ||
            std::ranges::find(found.affected, object) != found.affected.end() ||
            placeOf(m_rows, object) == m_rows.size())
            continue;
        found.affected.push_back(object);
        found.matching.push_back(object);
    }
}

void ObservedRows::show() {
    if (!m_found)
        return;
    Found found = std::move(*m_found);
    m_found.reset();
    RowSteps told;
    if (found.isEverything) {
        m_isStale = false;
        told.isReplaced = true;
        replace(m_rows, found.matching);
        m_rows = std::move(found.matching);
    } else {
        Objects rows = m_rows;
        for (const Entity* object : found.affected)
            std::erase(rows, object);
        const auto isEarlier = [this](const Entity* a, const Entity* b) { return isBefore(a, b); };
        for (Entity* object : found.matching)
            rows.insert(std::ranges::lower_bound(rows, object, isEarlier), object);
        told = stepsTo(rows, found);
        replace(found.affected, found.matching);
        m_rows = std::move(rows);
    }
    if (told.isReplaced || !told.steps.empty())
        m_observers.tell(told);
}

void ObservedRows::replace(const Objects& former, const Objects& next) {
    for (Entity* object : next)
        ++object->m_holds;
    for (Entity* object : former)
        --object->m_holds;
}

RowSteps ObservedRows::stepsTo(const Objects& rows, const Found& found) const {
    using Kind = RowStep::Kind;
    if (found.affected.size() + found.matching.size() > mostSteps)
        return {.isReplaced = true};
    RowSteps told;
    const auto add = [&](Kind kind, std::size_t place, const Entity& object, std::size_t from = 0) {
        told.steps.push_back({kind, place, object.key(), object.id(), from});
    };
    Objects current = m_rows;
    for (const Entity* object : found.affected) {
        if (std::ranges::find(found.matching, object) != found.matching.end())
            continue;
        const std::size_t place = placeOf(current, object);
        current.erase(iteratorAt(current, place));
        add(Kind::removed, place, *object);
    }
    // From the last one on: what comes behind it stands where it belongs by then.
    for (auto each = found.matching.rbegin(); each != found.matching.rend(); ++each) {
        const auto next = std::ranges::find(rows, *each) + 1;
        const std::size_t from = placeOf(current, *each);
        const bool isNew = from == current.size();
        if (!isNew)
            current.erase(iteratorAt(current, from));
        const std::size_t place = next == rows.end() ? current.size() : placeOf(current, *next);
        current.insert(iteratorAt(current, place), *each);
        if (isNew)
            add(Kind::inserted, place, **each);
        else if (from != place)
            add(Kind::moved, place, **each, from);
        if (!isNew)
            add(Kind::changed, place, **each);
    }
    return told;
}

ObservedCount::ObservedCount(MainContext& main, const EntityType& type, ObservedCondition condition)
    : m_follower(main, type, std::move(condition)) {
    load();
    m_reading = main.m_readers.add([this](const ChangeSet& changes) { read(changes); });
    m_showing = main.m_showers.add([this] { show(); });
}

void ObservedCount::assign(ObservedCondition condition) {
    m_follower.assign(std::move(condition));
    m_isStale = true;
    load();
}

void ObservedCount::load() {
    try {
        read({});
    } catch (const StoreError&) {
        m_follower.main().retryLook();
        return;
    }
    show();
}

void ObservedCount::read(const ChangeSet& changes) {
    m_found.reset();
    const auto keys = m_isStale ? std::nullopt : m_follower.affected(changes);
    if (!keys) {
        m_isStale = true;
        m_found = Found{.isEverything = true, .matching = fetch(m_follower.query())};
    } else if (!keys->empty()) {
        m_found = Found{.affected = *keys, .matching = fetch(m_follower.query(*keys))};
    }
}

std::vector<RowKey> ObservedCount::fetch(const Query& query) const {
    std::string sql = fmt::format("SELECT key FROM \"{}\"", m_follower.type().name);
    if (!query.where.empty())
        sql += " WHERE " + query.where;
    const StatementLoan rows = m_follower.main().context().statement(sql);
    rows->bindAll(query.values);
    std::vector<RowKey> keys;
    while (rows->step())
        keys.push_back(rows->integer(0));
    return keys;
}

void ObservedCount::show() {
    if (!m_found)
        return;
    const Found found = *std::exchange(m_found, std::nullopt);
    const std::size_t former = m_keys.size();
    if (found.isEverything) {
        m_isStale = false;
        m_keys.clear();
    }
    for (const RowKey key : found.affected)
        m_keys.erase(key);
    m_keys.insert(found.matching.begin(), found.matching.end());
    if (m_keys.size() != former)
        m_observers.tell(m_keys.size());
}

} // namespace quillorn
