#include "Desktop/ReminderImportScreen.h"

#include "Desktop/Values.h"

namespace quillorn {

namespace {

using Row = ReminderTriageRow;

constexpr Role<Row> roles[] = {
    role<&Row::title>("title"),           role<&Row::source>("source"),   role<&Row::remarks>("remarks"),
    role<&Row::skipReason>("skipReason"), role<&Row::project>("project"), role<&Row::priority>("priority"),
    role<&Row::isIncluded>("isIncluded"),
};

Row rowOf(const ReminderImportRow& row) {
    return {row.reminder.id,
            row.title,
            row.reminder.title,
            ReminderImportSheet::remarks(row),
            row.skipReason.value_or(""),
            row.projectID,
            row.priority,
            row.include};
}

} // namespace

ReminderImportScreen::ReminderImportScreen(ReminderImportService& service, SettingsStore& settings,
                                           ModelContext& context)
    : m_view(service, settings, context),
      m_model(m_rows, roles),
      m_changes(m_view.observe([this] {
          show();
          Q_EMIT projectsChanged();
      })) {}

void ReminderImportScreen::show() {
    std::vector<Row> rows;
    rows.reserve(m_view.rows().size());
    for (const ReminderImportRow& row : m_view.rows())
        rows.push_back(rowOf(row));
    m_rows.assign(std::move(rows));
    Q_EMIT changed();
}

QString ReminderImportScreen::stage() const {
    constexpr const char* names[] = {"setup", "review", "result"};
    return names[static_cast<int>(m_view.stage())];
}

QVariantList ReminderImportScreen::lists() const {
    QVariantList list;
    for (const std::string& name : m_view.listNames())
        list.append(QVariantMap{{"name", toVariant(name)}, {"isChosen", m_view.isSelected(name)}});
    return list;
}

QVariantList ReminderImportScreen::projects() const {
    QVariantList list;
    for (const ReminderImportSheet::ProjectChoice& choice : m_view.projectChoices())
        if (choice.id)
            list.append(QVariantMap{{"id", toVariant(*choice.id)}, {"name", toVariant(choice.label)}});
    return list;
}

QStringList ReminderImportScreen::failures() const {
    QStringList list;
    for (const std::string& failure : m_view.result().failures)
        list.append(toQString(failure));
    return list;
}

QVariantMap ReminderImportScreen::words() {
    using View = ReminderImportSheet;
    return {{"title", toVariant(View::title)},
            {"listsTitle", toVariant(View::listsTitle)},
            {"note", toVariant(View::note)},
            {"completesLabel", toVariant(View::completesLabel)},
            {"titlePrompt", toVariant(View::titlePrompt)},
            {"projectLabel", toVariant(View::projectLabel)},
            {"priorityLabel", toVariant(View::priorityLabel)},
            {"noProject", toVariant(View::noProject)},
            {"scanButton", toVariant(View::scanButton)},
            {"cancelButton", toVariant(View::cancelButton)},
            {"backButton", toVariant(View::backButton)},
            {"doneButton", toVariant(View::doneButton)},
            {"resultSymbol", toVariant(View::resultSymbol)},
            {"failureSymbol", toVariant(View::failureSymbol)}};
}

template <typename Work>
void ReminderImportScreen::edit(int row, const Work& work) {
    std::vector<ReminderImportRow>& rows = m_view.rows();
    if (row < 0 || row >= static_cast<int>(rows.size()))
        return;
    work(rows[static_cast<std::size_t>(row)]);
    show();
}

void ReminderImportScreen::setIncluded(int row, bool isIncluded) {
    edit(row, [&](ReminderImportRow& each) { each.include = isIncluded; });
}

void ReminderImportScreen::setTitle(int row, const QString& title) {
    edit(row, [&](ReminderImportRow& each) { each.title = title.toStdString(); });
}

void ReminderImportScreen::setProject(int row, const QString& project) {
    edit(row, [&](ReminderImportRow& each) { each.projectID = toId(project); });
}

void ReminderImportScreen::setPriority(int row, int priority) {
    edit(row,
         [&](ReminderImportRow& each) { each.priority = enumFromRaw<TaskPriority>(priority).value_or(each.priority); });
}

} // namespace quillorn
