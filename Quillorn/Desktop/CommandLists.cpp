#include "Desktop/CommandLists.h"

#include "Desktop/Variants.h"
#include "Views/GoToChoices.h"
#include "Views/MenuCommands.h"

#include <QVariantMap>

namespace quillorn {

QVariantList menuList() {
    QVariantList list;
    for (const MenuCommand& command : menuCommands)
        list.append(QVariantMap{{"name", toVariant(command.name)},
                                {"title", toVariant(command.title)},
                                {"keys", toVariant(command.keys)},
                                {"beginsPart", command.beginsPart}});
    return list;
}

QVariantList keyList() {
    QVariantList list;
    const auto add = [&](std::string_view place, std::string_view title, std::string_view keys) {
        list.append(QVariantMap{{"place", toVariant(place)}, {"title", toVariant(title)}, {"keys", toVariant(keys)}});
    };
    for (const MenuCommand& command : menuCommands)
        add("Menu", command.title, command.keys);
    for (const PlaceKeys& each : placeKeys)
        add(each.place, each.title, each.keys);
    return list;
}

QVariantMap commandTitles() {
    QVariantMap titles;
    for (const MenuCommand& command : menuCommands)
        titles.insert(toQString(command.name), toVariant(command.title));
    return titles;
}

QVariantList goToList(const ViewEnvironment& environment, const QString& search) {
    QVariantList list;
    for (const GoToChoice& choice : goToChoices(environment, search.toStdString()))
        list.append(QVariantMap{{"kind", toVariant(choice.kind)},
                                {"record", toVariant(choice.record)},
                                {"title", toVariant(choice.title)},
                                {"subtitle", toVariant(choice.subtitle)},
                                {"symbol", toVariant(choice.symbol)}});
    return list;
}

} // namespace quillorn
