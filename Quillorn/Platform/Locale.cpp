#include "Platform/Locale.h"

#include "Platform/Calendar.h"

#include <algorithm>
#include <cstdlib>
#include <unicode/locid.h>

namespace quillorn {

namespace {

/// ICU takes any bytes for a language.
bool isLanguage(std::string_view code) {
    return code.size() >= 2 && code.size() <= 8 &&
           std::all_of(code.begin(), code.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

} // namespace

std::string icuLocaleName(std::string_view name) {
    // What is behind the dot is the encoding; of what is behind the "@" only a script is of use ("sr_RS@latin").
    const std::size_t modifierStart = std::min(name.find('@'), name.size());
    const std::string_view modifier = name.substr(modifierStart);
    std::string base(name.substr(0, std::min(name.find('.'), modifierStart)));
    if (base.empty() || base == "C" || base == "POSIX")
        return "en_US";
    if (modifier == "@latin" || modifier == "@cyrillic")
        base.insert(std::min(base.find('_'), base.size()), modifier == "@latin" ? "_Latn" : "_Cyrl");
    const icu::Locale locale = icu::Locale::createCanonical(base.c_str());
    return !locale.isBogus() && isLanguage(locale.getLanguage()) ? locale.getName() : "en_US";
}

std::string currentLocale() {
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"})
        // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
        if (const char* value = std::getenv(variable); value != nullptr && *value != '\0')
            return icuLocaleName(value);
    return icuLocaleName("");
}

} // namespace quillorn
