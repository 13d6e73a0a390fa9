#include "Platform/DateFormats.h"

#include "Platform/Locale.h"

#include <limits>
#include <map>
#include <mutex>
#include <stdexcept>
#include <unicode/dtptngen.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>

namespace quillorn {

namespace {

void check(UErrorCode error) {
    if (U_FAILURE(error))
        throw std::runtime_error(std::string("Can't set up a date format: ") + u_errorName(error));
}

/// ICU's own zone data may be years behind the system's, so the format takes wall-clock times for GMT.
void detachFromZones(icu::DateFormat& format) {
    format.setTimeZone(*icu::TimeZone::getGMT());
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<icu::Calendar> calendar(format.getCalendar()->clone());
    if (auto* gregorian = dynamic_cast<icu::GregorianCalendar*>(calendar.get())) {
        // The same calendar for all years, as everywhere else in the program.
        gregorian->setGregorianChange(-std::numeric_limits<double>::max(), error);
        check(error);
        format.adoptCalendar(calendar.release());
    }
}

} // namespace

struct DateFormats::State {
    explicit State(std::string_view localeName) : locale(icuLocaleName(localeName).c_str()) {}

    std::unique_ptr<icu::DateFormat> makePattern(const std::string& pattern) const {
        UErrorCode error = U_ZERO_ERROR;
        auto format = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern), locale, error);
        check(error);
        return format;
    }

    std::unique_ptr<icu::DateFormat> makeMedium() const {
        std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateInstance(icu::DateFormat::kMedium, locale));
        if (!format)
            check(U_MISSING_RESOURCE_ERROR);
        return format;
    }

    std::string patternOf(std::string_view skeleton) const {
        UErrorCode error = U_ZERO_ERROR;
        const std::unique_ptr<icu::DateTimePatternGenerator> generator(
            icu::DateTimePatternGenerator::createInstance(locale, error));
        check(error);
        const std::string fields(skeleton);
        const icu::UnicodeString best = generator->getBestPattern(icu::UnicodeString::fromUTF8(fields), error);
        check(error);
        std::string pattern;
        return best.toUTF8String(pattern);
    }

    static std::string text(const icu::DateFormat& format, std::chrono::local_seconds time) {
        icu::UnicodeString formatted;
        format.format(static_cast<double>(time.time_since_epoch().count()) * 1000, formatted);
        std::string result;
        return formatted.toUTF8String(result);
    }

    const icu::Locale locale;
    std::mutex mutex;
    /// By pattern: making one takes ten times as long as using it, and one must not be used by two threads.
    std::map<std::string, std::unique_ptr<icu::DateFormat>, std::less<>> formats;
    std::unique_ptr<icu::DateFormat> medium;
    std::map<std::string, std::string> patterns; // by skeleton
};

DateFormats::DateFormats(std::string_view locale) : m_state(std::make_unique<State>(locale)) {}
DateFormats::~DateFormats() = default;

std::string DateFormats::format(std::chrono::local_seconds time, std::string_view pattern) {
    const std::lock_guard lock(m_state->mutex);
    auto found = m_state->formats.find(pattern);
    if (found == m_state->formats.end()) {
        std::string key(pattern);
        auto format = m_state->makePattern(key);
        detachFromZones(*format);
        found = m_state->formats.emplace(std::move(key), std::move(format)).first;
    }
    return State::text(*found->second, time);
}

std::string DateFormats::formatFields(std::chrono::local_seconds time, std::string_view skeleton) {
    std::string pattern;
    {
        const std::lock_guard lock(m_state->mutex);
        std::string& known = m_state->patterns[std::string(skeleton)];
        if (known.empty())
            known = m_state->patternOf(skeleton);
        pattern = known;
    }
    return format(time, pattern);
}

std::string DateFormats::mediumDate(std::chrono::local_seconds time) {
    const std::lock_guard lock(m_state->mutex);
    if (!m_state->medium) {
        m_state->medium = m_state->makeMedium();
        detachFromZones(*m_state->medium);
    }
    return State::text(*m_state->medium, time);
}

std::chrono::weekday DateFormats::firstWeekday() const {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(
        icu::Calendar::createInstance(*icu::TimeZone::getGMT(), m_state->locale, error));
    check(error);
    const UCalendarDaysOfWeek first = calendar->getFirstDayOfWeek(error);
    check(error);
    return std::chrono::weekday(static_cast<unsigned>(first - UCAL_SUNDAY));
}

} // namespace quillorn
