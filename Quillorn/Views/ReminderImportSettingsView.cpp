#include "Views/ReminderImportSettingsView.h"

#include "AI/AIService.h"
#include "Models/Formatters.h"
#include "Models/Settings.h"
#include "Platform/Clock.h"
#include "Reminders/ReminderImportService.h"

#include <algorithm>
#include <cmath>
#include <fmt/core.h>

namespace quillorn {

ReminderImportSettingsView::ReminderImportSettingsView(ReminderImportService& service, SettingsStore& settings,
                                                       const Clock& clock)
    : m_service(service),
      m_settings(settings),
      m_clock(clock),
      m_ofService(service.observe([this] { m_observers.tell(); })) {}

void ReminderImportSettingsView::appear() {
    m_loading.cancel();
    m_loading.start(load(*this));
}

Task<> ReminderImportSettingsView::load(ReminderImportSettingsView& view) {
    view.m_hasAccess = co_await view.m_service.ensureAccess();
    view.m_names.clear();
    if (*view.m_hasAccess) {
        try {
            view.m_names = co_await view.m_service.listNames();
        } catch (const std::exception&) {
            view.m_hasAccess = false; // it has gone in between
        }
    }
    view.m_observers.tell();
    co_await view.m_service.refresh();
}

std::vector<ReminderImportSettingsView::List> ReminderImportSettingsView::lists() const {
    const std::vector<std::string> chosen = m_service.chosenLists();
    const auto isIn = [](const std::vector<std::string>& names, const std::string& name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    std::vector<List> rows;
    rows.reserve(m_names.size() + chosen.size());
    for (const std::string& name : m_names)
        rows.push_back({name, isIn(chosen, name)});
    for (const std::string& name : chosen)
        if (!isIn(m_names, name))
            rows.push_back({name, true});
    return rows;
}

void ReminderImportSettingsView::setChosen(const std::string& list, bool isChosen) {
    std::vector<std::string> chosen = m_service.chosenLists();
    std::erase(chosen, list);
    if (isChosen)
        chosen.push_back(list);
    Settings(m_settings).set(setting("reminderImportLists"), Json(Json::Array(chosen.begin(), chosen.end())).text());
    m_observers.tell();
}

bool ReminderImportSettingsView::isAutomatic() const {
    return Settings(m_settings).boolean(setting("reminderImportAuto"));
}

void ReminderImportSettingsView::setAutomatic(bool isAutomatic) {
    Settings(m_settings).set(setting("reminderImportAuto"), isAutomatic);
    m_observers.tell();
}

std::int64_t ReminderImportSettingsView::intervalMinutes() const {
    return Settings(m_settings).integer(setting("reminderImportIntervalMinutes"));
}

void ReminderImportSettingsView::setIntervalMinutes(std::int64_t minutes) {
    Settings(m_settings).set(setting("reminderImportIntervalMinutes"), minutes);
    m_observers.tell();
}

bool ReminderImportSettingsView::completesReminders() const {
    return m_service.completesReminders();
}

void ReminderImportSettingsView::setCompletesReminders(bool completes) {
    Settings(m_settings).set(setting("reminderImportCompletes"), completes);
    m_observers.tell();
}

std::string ReminderImportSettingsView::explanation() {
    return fmt::format("Automatic runs only file reminders the AI is confident about (≥ {}%) for an existing project, "
                       "skipping duplicates. Everything else stays in Reminders for Review & Import. Reminders are "
                       "never deleted.",
                       std::lround(reminderConfidenceThreshold * 100));
}

bool ReminderImportSettingsView::isConfigured() const {
    return AIService::isConfigured(m_settings);
}

bool ReminderImportSettingsView::isRunning() const {
    return m_service.isRunning();
}

std::string ReminderImportSettingsView::lastRun() const {
    if (m_service.isRunning())
        return m_service.phase().value_or("Running…");
    const auto& date = m_service.lastRunDate();
    return date ? relativeTime(*date, m_clock.now()) + " ago" : "Never";
}

const std::optional<std::string>& ReminderImportSettingsView::lastResult() const {
    return m_service.lastResult();
}

std::optional<std::string> ReminderImportSettingsView::nextRun() const {
    const auto date = m_service.nextRunDate();
    if (!date)
        return std::nullopt;
    const Date now = m_clock.now();
    return *date <= now ? "within a minute" : relativeTime(now, *date);
}

std::vector<std::string> ReminderImportSettingsView::recent() const {
    return m_service.recent();
}

std::optional<std::string> ReminderImportSettingsView::skipped() const {
    const std::size_t count = m_service.skippedCount();
    if (count == 0)
        return std::nullopt;
    return fmt::format("{} reviewed reminder{} won't be sent to the AI again unless edited.", count,
                       count == 1 ? "" : "s");
}

void ReminderImportSettingsView::runNow() {
    m_service.startImport();
}

void ReminderImportSettingsView::recheckSkipped() {
    m_rechecking.start(m_service.recheckSkipped());
}

} // namespace quillorn
