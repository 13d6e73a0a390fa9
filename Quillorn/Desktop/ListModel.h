#pragma once

#include "Desktop/Variants.h"
#include "Views/ObservableList.h"

#include <QAbstractListModel>
#include <span>

namespace quillorn {

/// A field of a Row by the name that screens use.
template <typename Row>
struct Role {
    const char* name;
    QVariant (*value)(const Row& row);
};

/// role<&TaskRow::title>("title")
template <auto Member, typename Row = MemberOwner<Member>>
constexpr Role<Row> role(const char* name) {
    return {name, [](const Row& row) { return toVariant(row.*Member); }};
}

/// The rows of an ObservableList for a view of the toolkit, step by step: it is never reset. The list outlives it.
template <typename Row>
class ListModel final : public QAbstractListModel {
  public:
    ListModel(ObservableList<Row>& rows, std::span<const Role<Row>> roles)
        : m_rows(rows),
          m_roles(roles),
          m_observation(rows.observe([this](const ListStep& step, typename ObservableList<Row>::Moment moment) {
              follow(step, moment == ObservableList<Row>::Moment::before);
          })) {}

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }

    QVariant data(const QModelIndex& index, int role) const override {
        const int field = role - Qt::UserRole;
        if (!checkIndex(index, CheckIndexOption::IndexIsValid) || field < 0 ||
            field >= static_cast<int>(m_roles.size()))
            return {};
        return m_roles[static_cast<std::size_t>(field)].value(m_rows[static_cast<std::size_t>(index.row())]);
    }

    QHash<int, QByteArray> roleNames() const override {
        QHash<int, QByteArray> names;
        for (std::size_t field = 0; field < m_roles.size(); ++field)
            names.insert(Qt::UserRole + static_cast<int>(field), m_roles[field].name);
        return names;
    }

  private:
    void follow(const ListStep& step, bool isBefore) {
        const int first = static_cast<int>(step.first);
        const int last = first + static_cast<int>(step.count) - 1;
        switch (step.kind) {
        case ListStep::Kind::inserted:
            return isBefore ? beginInsertRows({}, first, last) : endInsertRows();
        case ListStep::Kind::removed:
            return isBefore ? beginRemoveRows({}, first, last) : endRemoveRows();
        case ListStep::Kind::moved: {
            // The toolkit counts the places in front of which a row goes, in the list as it was.
            const int target = static_cast<int>(step.target);
            if (!isBefore)
                endMoveRows();
            else
                beginMoveRows({}, first, first, {}, target > first ? target + 1 : target);
            return;
        }
        case ListStep::Kind::changed:
            if (!isBefore)
                Q_EMIT dataChanged(index(first), index(last));
            return;
        }
    }

    ObservableList<Row>& m_rows;
    std::span<const Role<Row>> m_roles;
    Observation m_observation;
};

} // namespace quillorn
