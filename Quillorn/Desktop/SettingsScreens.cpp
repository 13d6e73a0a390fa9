#include "Desktop/SettingsScreens.h"

#include "API/APIServer.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSysInfo>

namespace quillorn {

QVariantList SettingsTabsScreen::tabs() {
    QVariantList list;
    for (const SettingsView::Tab& tab : SettingsView::tabs)
        list.append(QVariantMap{
            {"tag", toVariant(tab.tag)}, {"label", toVariant(tab.label)}, {"symbol", toVariant(tab.symbol)}});
    return list;
}

void SettingsTabsScreen::select(int tab) {
    if (tab >= 0 && tab < static_cast<int>(SettingsView::tabs.size()))
        attempt([&] { m_view.select(SettingsView::tabs[static_cast<std::size_t>(tab)].tag); });
}

QStringList GeneralSettingsScreen::priorities() {
    return caseLabels<TaskPriority>();
}

void GeneralSettingsScreen::setPriority(int priority) {
    if (const auto known = enumFromRaw<TaskPriority>(priority))
        attempt([&] { m_view.setDefaultPriority(*known); });
}

QStringList GeneralSettingsScreen::completions() {
    return caseLabels<SubtaskCompletionBehavior>();
}

void GeneralSettingsScreen::setCompletion(int completion) {
    if (const auto known = enumFromRaw<SubtaskCompletionBehavior>(completion))
        attempt([&] { m_view.setCompletion(*known); });
}

QVariantMap GeneralSettingsScreen::words() {
    using View = GeneralSettingsView;
    return {{"tasks", toVariant(View::tasks.title)},
            {"tasksSymbol", toVariant(View::tasks.symbol)},
            {"showCompletedLabel", toVariant(View::showCompletedLabel)},
            {"defaultPriorityLabel", toVariant(View::defaultPriorityLabel)},
            {"subtasks", toVariant(View::subtasks.title)},
            {"subtasksSymbol", toVariant(View::subtasks.symbol)},
            {"completionLabel", toVariant(View::completionLabel)},
            {"thoughtkeg", toVariant(View::thoughtkeg.title)},
            {"thoughtkegSymbol", toVariant(View::thoughtkeg.symbol)},
            {"pushLabel", toVariant(View::pushLabel)},
            {"pushHelp", toVariant(View::pushHelp)}};
}

APISettingsScreen::APISettingsScreen(APIServer& server, SettingsStore& settings, MainQueue& queue)
    : m_view({server, settings, m_random, queue}, QSysInfo::machineHostName().toStdString()),
      m_changes(m_view.observe(telling())) {}

QVariantMap APISettingsScreen::words() {
    using View = APISettingsView;
    return {{"httpTitle", toVariant(View::httpTitle)},
            {"mcpTitle", toVariant(View::mcpTitle)},
            {"statusLabel", toVariant(View::statusLabel)},
            {"portLabel", toVariant(View::portLabel)},
            {"keyLabel", toVariant(View::keyLabel)},
            {"endpointLabel", toVariant(View::endpointLabel)},
            {"autoStartLabel", toVariant(View::autoStartLabel)},
            {"externalLabel", toVariant(View::externalLabel)},
            {"requireAuthLabel", toVariant(View::requireAuthLabel)},
            {"generateButton", toVariant(View::generateButton)},
            {"copyDirectiveButton", toVariant(View::copyDirectiveButton)},
            {"httpContents", toVariant(View::httpContents)},
            {"mcpContents", toVariant(View::mcpContents)},
            {"showKeyButton", toVariant(View::showKeyButton)},
            {"hideKeyButton", toVariant(View::hideKeyButton)}};
}

void APISettingsScreen::copyConfig() {
    QGuiApplication::clipboard()->setText(toQString(m_view.copyConfig()));
}

void APISettingsScreen::copyDirective() {
    QGuiApplication::clipboard()->setText(toQString(APISettingsView::copyDirective()));
}

QVariantMap SyncSettingsScreen::words() {
    using View = SyncSettingsView;
    return {{"title", toVariant(View::title)},
            {"titleSymbol", toVariant(View::titleSymbol)},
            {"statusLabel", toVariant(View::statusLabel)},
            {"networkLabel", toVariant(View::networkLabel)},
            {"lastSyncedLabel", toVariant(View::lastSyncedLabel)}};
}

QVariantMap BackupSettingsScreen::words() {
    using View = BackupSettingsView;
    return {{"automaticTitle", toVariant(View::automaticTitle)}, {"automaticLabel", toVariant(View::automaticLabel)},
            {"folderLabel", toVariant(View::folderLabel)},       {"chooseButton", toVariant(View::chooseButton)},
            {"choosePrompt", toVariant(View::choosePrompt)},     {"showButton", toVariant(View::showButton)},
            {"warningSymbol", toVariant(View::warningSymbol)},   {"tip", toVariant(View::tip)},
            {"lastLabel", toVariant(View::lastLabel)},           {"backUpButton", toVariant(View::backUpButton)},
            {"restoreTitle", toVariant(View::restoreTitle)},     {"restoreText", toVariant(View::restoreText)},
            {"restorePrompt", toVariant(View::restorePrompt)}};
}

QVariantMap NotificationSettingsScreen::words() {
    using View = NotificationSettingsView;
    return {
        {"enabledTitle", toVariant(View::enabledTitle)}, {"enabledSymbol", toVariant(View::enabledSymbol)},
        {"enableButton", toVariant(View::enableButton)}, {"disabledTitle", toVariant(View::disabledTitle)},
        {"disabledText", toVariant(View::disabledText)}, {"openSettingsButton", toVariant(View::openSettingsButton)},
        {"toggleLabel", toVariant(View::toggleLabel)},   {"timeLabel", toVariant(View::timeLabel)},
        {"aboutTitle", toVariant(View::aboutTitle)},     {"aboutText", toVariant(View::aboutText)}};
}

QVariantList ReminderSettingsScreen::lists() const {
    QVariantList all;
    for (const ReminderImportSettingsView::List& list : m_view.lists())
        all.append(QVariantMap{{"name", toVariant(list.name)}, {"isChosen", list.isChosen}});
    return all;
}

QStringList ReminderSettingsScreen::intervals() {
    QStringList labels;
    for (const ReminderImportSettingsView::Interval& interval : ReminderImportSettingsView::intervals)
        labels.append(toQString(interval.label));
    return labels;
}

int ReminderSettingsScreen::interval() const {
    const auto& all = ReminderImportSettingsView::intervals;
    for (std::size_t place = 0; place < all.size(); ++place)
        if (all.at(place).minutes == m_view.intervalMinutes())
            return static_cast<int>(place);
    return -1;
}

void ReminderSettingsScreen::setInterval(int interval) {
    const auto& all = ReminderImportSettingsView::intervals;
    if (interval >= 0 && interval < static_cast<int>(all.size()))
        attempt([&] { m_view.setIntervalMinutes(all.at(static_cast<std::size_t>(interval)).minutes); });
}

QVariantMap ReminderSettingsScreen::activity() const {
    return {{"lastRun", toVariant(m_view.lastRun())},
            {"lastResult", toVariant(m_view.lastResult().value_or(""))},
            {"nextRun", toVariant(m_view.nextRun().value_or(""))},
            {"skipped", toVariant(m_view.skipped().value_or(""))}};
}

QStringList ReminderSettingsScreen::recent() const {
    QStringList titles;
    for (const std::string& title : m_view.recent())
        titles.append(toQString(title));
    return titles;
}

QVariantMap ReminderSettingsScreen::words() {
    using View = ReminderImportSettingsView;
    return {{"listsTitle", toVariant(View::listsTitle)},
            {"scheduleTitle", toVariant(View::scheduleTitle)},
            {"activityTitle", toVariant(View::activityTitle)},
            {"recentTitle", toVariant(View::recentTitle)},
            {"noAccess", toVariant(View::noAccess)},
            {"noAccessSymbol", toVariant(View::noAccessSymbol)},
            {"notConfigured", toVariant(View::notConfigured)},
            {"automaticLabel", toVariant(View::automaticLabel)},
            {"completesLabel", toVariant(View::completesLabel)},
            {"runLabel", toVariant(View::runLabel)},
            {"reviewLabel", toVariant(View::reviewLabel)},
            {"recheckLabel", toVariant(View::recheckLabel)},
            {"recheckHelp", toVariant(View::recheckHelp)}};
}

} // namespace quillorn
