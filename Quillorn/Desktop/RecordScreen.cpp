#include "Desktop/RecordScreen.h"

#include <algorithm>

namespace quillorn {

namespace {

using Card = ProjectDetailView::Card;
using Row = ClientDetailView::Row;

constexpr NamedDetailView::Field textFields[] = {NamedDetailView::Field::name, NamedDetailView::Field::description};
constexpr Role<Card> cardRoles[] = {
    role<&Card::id>("taskId"), role<&Card::title>("title"),         role<&Card::priorityMark>("mark"),
    role<&Card::due>("due"),   role<&Card::isOverdue>("isOverdue"), role<&Card::subtasks>("subtasks"),
    role<&Card::time>("time"), role<&Card::tags>("tags"),           role<&Card::isCompleted>("isCompleted"),
};
constexpr Role<Row> projectRoles[] = {
    role<&Row::id>("recordId"),         role<&Row::isGroup>("isGroup"),
    role<&Row::isInGroup>("isInGroup"), role<&Row::isCollapsed>("isCollapsed"),
    role<&Row::name>("name"),           role<&Row::color>("tone"),
    role<&Row::detail>("detail"),       role<&Row::progress>("progress"),
};

} // namespace

BoardColumn::BoardColumn(ProjectDetailView::Column& column) : m_column(column), m_cards(column.cards, cardRoles) {}

int BoardColumn::place(const QString& task) const {
    const std::vector<Card>& cards = m_column.cards.rows();
    const auto found = std::ranges::find(cards, toId(task), &Card::id);
    return found == cards.end() ? -1 : static_cast<int>(found - cards.begin());
}

RecordScreen::RecordScreen(const ViewEnvironment& environment, const AIEnvironment& ai, SceneStorage& scene,
                           bool isProject, const UUID& record) {
    if (isProject) {
        auto view = std::make_unique<ProjectDetailView>(environment, ai, scene, record);
        m_project = view.get();
        for (ProjectDetailView::Column& column : m_project->board())
            m_board.push_back(std::make_unique<BoardColumn>(column));
        m_view = std::move(view);
    } else {
        auto view = std::make_unique<ClientDetailView>(environment, ai, scene, record);
        m_client = view.get();
        m_projects = std::make_unique<ListModel<Row>>(m_client->projects(), projectRoles);
        m_view = std::move(view);
    }
    m_changes = m_view->observe([this] {
        for (const auto& column : m_board)
            Q_EMIT column->changed();
        Q_EMIT changed();
    });
}

QString RecordScreen::warning() const {
    for (const auto field : textFields)
        if (const std::string_view warning = m_view->field(field).notice(); !warning.empty())
            return toQString(warning);
    return {};
}

void RecordScreen::revert() {
    for (const auto field : textFields)
        m_view->revert(field);
}

QVariantList RecordScreen::tabs() const {
    QVariantList list;
    for (const DetailTab& tab : m_view->tabs())
        list.append(QVariantMap{
            {"tag", toVariant(tab.tag)}, {"label", toVariant(tab.label)}, {"symbol", toVariant(tab.symbol)}});
    return list;
}

void RecordScreen::setTab(const QString& tab) {
    m_view->selectTab(tab.toStdString());
    Q_EMIT changed();
}

QVariantList RecordScreen::figures() const {
    QVariantList list;
    for (const DetailFigure& figure : m_view->figures())
        list.append(QVariantMap{{"label", toVariant(figure.label)},
                                {"figure", toVariant(figure.value)},
                                {"note", toVariant(figure.detail)}});
    return list;
}

QList<QObject*> RecordScreen::board() const {
    QList<QObject*> columns;
    for (const auto& column : m_board)
        columns.append(column.get());
    return columns;
}

void RecordScreen::toggleGroup(const QString& group) {
    if (const auto id = toId(group); id && m_client != nullptr)
        m_client->toggleGroup(*id);
}

void RecordScreen::moveCard(const QString& task, int status) {
    const auto known = enumFromRaw<TaskStatus>(status);
    if (const auto id = toId(task); id && known && m_project != nullptr)
        m_project->moveCard(*id, *known);
}

void RecordScreen::addCard(const QString& title, int status) {
    if (const auto known = enumFromRaw<TaskStatus>(status); known && m_project != nullptr)
        m_project->addCard(title.toStdString(), *known);
}

QVariantMap RecordScreen::words() {
    return {{"projectsTitle", toVariant(ClientDetailView::projectsTitle)},
            {"noProjectsTitle", toVariant(ClientDetailView::noProjectsTitle)},
            {"noProjectsText", toVariant(ClientDetailView::noProjectsText)}};
}

} // namespace quillorn
