#pragma once

#include <string>
#include <string_view>

namespace quillorn {

/// The name by which ICU knows a locale of the environment ("de_DE.UTF-8@euro" is "de_DE"). None, "C" and "POSIX"
/// count as "en_US": ICU's own default for them sorts by code points.
std::string icuLocaleName(std::string_view name);

} // namespace quillorn
