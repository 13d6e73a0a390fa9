#include "Views/ReminderImportSheet.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/Settings.h"
#include "Reminders/SiriReminderRules.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <fmt/ranges.h>

namespace quillorn {

ReminderImportSheet::ReminderImportSheet(ReminderImportService& service, SettingsStore& settings,
                                         ModelContext& mainContext)
    : m_service(service),
      m_settings(settings),
      m_context(mainContext),
      m_selected(service.chosenLists()),
      m_ofService(service.observe([this] { m_observers.tell(); })) {}

void ReminderImportSheet::setBusy(bool isBusy) {
    m_isBusy = isBusy;
    m_observers.tell();
}

void ReminderImportSheet::appear() {
    m_tasks.start(load(*this));
}

Task<> ReminderImportSheet::load(ReminderImportSheet& sheet) {
    sheet.m_hasAccess = co_await sheet.m_service.ensureAccess();
    if (*sheet.m_hasAccess) {
        try {
            sheet.m_names = co_await sheet.m_service.listNames();
        } catch (const std::exception&) {
            sheet.m_hasAccess = false; // it has gone in between
        }
    }
    std::erase_if(sheet.m_selected, [&](const std::string& list) {
        return std::find(sheet.m_names.begin(), sheet.m_names.end(), list) == sheet.m_names.end();
    });
    sheet.m_observers.tell();
}

bool ReminderImportSheet::isSelected(const std::string& list) const {
    return std::find(m_selected.begin(), m_selected.end(), list) != m_selected.end();
}

void ReminderImportSheet::select(const std::string& list, bool isSelected) {
    std::erase(m_selected, list);
    if (isSelected)
        m_selected.push_back(list);
    m_observers.tell();
}

bool ReminderImportSheet::completes() const {
    return m_service.completesReminders();
}

void ReminderImportSheet::setCompletes(bool completes) {
    Settings(m_settings).set(setting("reminderImportCompletes"), completes);
    m_observers.tell();
}

bool ReminderImportSheet::isConfigured() const {
    return AIService::isConfigured(m_settings);
}

bool ReminderImportSheet::canScan() const {
    return isConfigured() && !m_isBusy && m_hasAccess.value_or(false) && !m_selected.empty();
}

std::string_view ReminderImportSheet::hindrance() const {
    if (m_stage == Stage::review)
        return m_rows.empty() && !m_isBusy && !m_error ? nothingOpen : "";
    if (m_stage != Stage::setup)
        return "";
    if (m_hasAccess == false)
        return noAccess;
    return isConfigured() ? "" : notConfigured;
}

void ReminderImportSheet::scan() {
    if (!canScan())
        return;
    m_error.reset();
    m_stage = Stage::review;
    setBusy(true);
    m_tasks.start(read(*this, m_selected));
}

Task<> ReminderImportSheet::read(ReminderImportSheet& sheet, std::vector<std::string> lists) {
    try {
        sheet.m_scan = co_await sheet.m_service.scan(std::move(lists));
        sheet.m_rows = sheet.m_scan.rows;
    } catch (const std::exception& error) {
        sheet.m_rows.clear();
        sheet.m_error = fmt::format("AI request failed: {}", error.what());
    }
    sheet.setBusy(false);
}

std::vector<ReminderImportSheet::ProjectChoice> ReminderImportSheet::projectChoices() const {
    std::vector<ProjectChoice> choices{{std::nullopt, std::string(noProject)}};
    for (const Project* project : SiriReminderRules::activeProjects(m_context))
        choices.push_back({project->id(), project->client()
                                              ? fmt::format("{} / {}", project->client()->name(), project->name())
                                              : project->name()});
    return choices;
}

std::vector<std::string> ReminderImportSheet::remarks(const ReminderImportRow& row) {
    std::vector<std::string> remarks;
    if (row.confidence)
        remarks.push_back(fmt::format("· {:.2f}", *row.confidence));
    if (!row.reason.empty())
        remarks.push_back("· " + row.reason);
    if (row.skipReason)
        remarks.push_back(*row.skipReason);
    return remarks;
}

std::size_t ReminderImportSheet::includedCount() const {
    return static_cast<std::size_t>(std::ranges::count_if(m_rows, &ReminderImportRow::include));
}

std::string ReminderImportSheet::summary() const {
    return fmt::format("{} reminder{} from {} · {} chosen", m_rows.size(), m_rows.size() == 1 ? "" : "s",
                       fmt::join(m_scan.lists, ", "), includedCount());
}

std::string ReminderImportSheet::importLabel() const {
    return fmt::format("Import {}", includedCount());
}

bool ReminderImportSheet::canImport() const {
    return m_stage == Stage::review && !m_isBusy && !m_error && includedCount() > 0;
}

void ReminderImportSheet::import() {
    if (!canImport())
        return;
    setBusy(true);
    m_tasks.start(apply(*this));
}

Task<> ReminderImportSheet::apply(ReminderImportSheet& sheet) {
    try {
        sheet.m_completed = sheet.completes();
        sheet.m_result = co_await sheet.m_service.import(sheet.m_rows, sheet.m_completed, sheet.m_scan);
        sheet.m_stage = Stage::result;
    } catch (const std::exception& error) {
        sheet.m_error = error.what();
    }
    sheet.setBusy(false);
}

void ReminderImportSheet::back() {
    if (m_isBusy)
        return;
    m_stage = Stage::setup;
    m_error.reset();
    m_rows.clear();
    m_observers.tell();
}

std::string ReminderImportSheet::resultLine() const {
    return importedLine(m_result, m_completed);
}

} // namespace quillorn
