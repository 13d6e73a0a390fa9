#include "Views/GeneralSettingsView.h"

#include "Models/Settings.h"

namespace quillorn {

namespace {

/// The catalogue knows the range.
template <class Enum>
Enum chosen(SettingsStore& store, const Setting& key) {
    return enumFromRaw<Enum>(Settings(store).integer(key)).value_or(Enum{});
}

template <class Enum>
Json raw(Enum value) {
    return static_cast<std::int64_t>(value);
}

} // namespace

bool GeneralSettingsView::showsCompletedTasks() const {
    return Settings(settings()).boolean(setting("showCompletedTasks"));
}
void GeneralSettingsView::setShowsCompletedTasks(bool shows) {
    keep(setting("showCompletedTasks"), shows);
}
TaskPriority GeneralSettingsView::defaultPriority() const {
    return chosen<TaskPriority>(settings(), setting("defaultPriority"));
}
void GeneralSettingsView::setDefaultPriority(TaskPriority priority) {
    keep(setting("defaultPriority"), raw(priority));
}
SubtaskCompletionBehavior GeneralSettingsView::completion() const {
    return chosen<SubtaskCompletionBehavior>(settings(), setting("subtaskCompletionBehavior"));
}
void GeneralSettingsView::setCompletion(SubtaskCompletionBehavior behavior) {
    keep(setting("subtaskCompletionBehavior"), raw(behavior));
}
bool GeneralSettingsView::pushesToThoughtkeg() const {
    return Settings(settings()).boolean(setting("thoughtkegPushEnabled"));
}
void GeneralSettingsView::setPushesToThoughtkeg(bool pushes) {
    keep(setting("thoughtkegPushEnabled"), pushes);
}

} // namespace quillorn
