#pragma once

#include "Desktop/Variants.h"
#include "Models/Enums.h"
#include "Models/TaskActions.h"
#include "Views/DetailView.h"
#include "Views/RecordForm.h"
#include "Views/TaskListTexts.h"

#include <QVariantMap>

namespace quillorn {

// What several view models hold, as screens read it.

/// {title, text, action}; empty for none.
inline QVariantMap toQuestion(const std::optional<Confirmation>& question, const char* action = "Delete") {
    if (!question)
        return {};
    return {{"title", toVariant(question->title)}, {"text", toVariant(question->message)}, {"action", action}};
}

/// {symbol, title, text, action, command}; empty for none.
inline QVariantMap toMap(const std::optional<EmptyState>& state) {
    if (!state)
        return {};
    return {{"symbol", toVariant(state->symbol)},
            {"title", toVariant(state->title)},
            {"text", toVariant(state->text)},
            {"action", toVariant(state->action)},
            {"command", toVariant(state->command)}};
}

inline QVariant toVariant(const FormChoice& choice) {
    return QVariantMap{
        {"id", toVariant(choice.id)}, {"name", toVariant(choice.name)}, {"tone", toVariant(choice.color)}};
}

inline QVariant toVariant(const PathStep& step) {
    constexpr const char* kinds[] = {"client", "project", "task"};
    return QVariantMap{{"id", toVariant(step.id)},
                       {"kind", kinds[static_cast<int>(step.kind)]},
                       {"name", toVariant(step.name)},
                       {"tone", toVariant(step.color)}};
}

/// The labels of an enum's cases, in their order.
template <typename Enum>
QStringList caseLabels() {
    QStringList all;
    for (int raw = 0; raw < EnumCases<Enum>::count; ++raw)
        all.append(toQString(label(static_cast<Enum>(raw))));
    return all;
}

template <typename Value>
QVariantList toList(const std::vector<Value>& values) {
    QVariantList list;
    for (const Value& value : values)
        list.append(toVariant(value));
    return list;
}

} // namespace quillorn
