#pragma once

#include "Views/ViewEnvironment.h"

#include <QString>
#include <QVariantList>

namespace quillorn {

/// {name, title, keys, beginsPart} of the menu.
QVariantList menuList();
/// {place, title, keys}: what the menu has, then the keys of single places.
QVariantList keyList();
/// {name: title} of all commands, for buttons that give one.
QVariantMap commandTitles();
/// {kind, record, title, subtitle, symbol}
QVariantList goToList(const ViewEnvironment& environment, const QString& search);

} // namespace quillorn
