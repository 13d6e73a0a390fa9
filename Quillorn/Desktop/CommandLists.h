#pragma once

#include "Views/ViewEnvironment.h"

#include <QString>
#include <QVariantList>

namespace quillorn {

/// {name, title, keys, beginsPart} of the menu.
QVariantList menuList();
/// {place, title, keys}: what the menu has, then the keys of single places.
QVariantList keyList();
/// {kind, record, title, subtitle, symbol}
QVariantList goToList(const ViewEnvironment& environment, const QString& search);

} // namespace quillorn
