#include "Platform/Date.h"

#include <algorithm>

namespace quillorn {

namespace {

using namespace std::chrono;

// The years that four digits can say. Instants outside are written as the nearest one inside.
constexpr sys_seconds earliest = sys_days{year{0} / January / 1};
constexpr sys_seconds latest = sys_days{year{9999} / December / 31} + hours{24} - seconds{1};

void putTwoDigits(char* at, unsigned value) {
    at[0] = static_cast<char>('0' + value / 10);
    at[1] = static_cast<char>('0' + value % 10);
}

/// Takes digits and marks from the front of a text; any step that doesn't fit makes it fail for good.
class Scanner {
  public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    unsigned digits(std::size_t count) {
        if (m_failed || m_rest.size() < count)
            return fail();
        unsigned value = 0;
        for (const char c : m_rest.substr(0, count)) {
            if (c < '0' || c > '9')
                return fail();
            value = value * 10 + static_cast<unsigned>(c - '0');
        }
        m_rest.remove_prefix(count);
        return value;
    }

    unsigned digits(std::size_t count, unsigned maximum) {
        const unsigned value = digits(count);
        return value <= maximum ? value : fail();
    }

    bool takeIf(char mark) {
        if (m_failed || !m_rest.starts_with(mark))
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    void take(char mark) {
        if (!takeIf(mark))
            fail();
    }

    unsigned fail() {
        m_failed = true;
        return 0;
    }

    bool finished() const { return !m_failed && m_rest.empty(); }

  private:
    std::string_view m_rest;
    bool m_failed = false;
};

/// What local time is ahead of UTC.
seconds scanOffset(Scanner& scanner) {
    if (scanner.takeIf('Z'))
        return seconds{0};
    const bool behind = scanner.takeIf('-');
    if (!behind)
        scanner.take('+');
    const hours offsetHours{scanner.digits(2, 23)};
    scanner.takeIf(':');
    const seconds offset = offsetHours + minutes{scanner.digits(2, 59)};
    return behind ? -offset : offset;
}

} // namespace

double secondsBetween(Date from, Date to) {
    // As floating-point numbers, which can't overflow: a damaged store holds any date. Exact for 285 years, beyond them
    // for whole seconds.
    using Microseconds = duration<double, std::micro>;
    return duration<double>(Microseconds(to.time_since_epoch()) - Microseconds(from.time_since_epoch())).count();
}

std::array<char, 20> iso8601Characters(Date date) {
    const sys_seconds time = std::clamp(floor<seconds>(date), earliest, latest);
    const sys_days day = floor<days>(time);
    const year_month_day civil{day};
    const auto years = static_cast<unsigned>(static_cast<int>(civil.year()));
    const auto secondOfDay = static_cast<unsigned>((time - day).count());

    std::array<char, 20> text{'0', '0', '0', '0', '-', '0', '0', '-', '0', '0',
                              'T', '0', '0', ':', '0', '0', ':', '0', '0', 'Z'};
    char* out = text.data();
    putTwoDigits(out, years / 100);
    putTwoDigits(out + 2, years % 100);
    putTwoDigits(out + 5, static_cast<unsigned>(civil.month()));
    putTwoDigits(out + 8, static_cast<unsigned>(civil.day()));
    putTwoDigits(out + 11, secondOfDay / 3600);
    putTwoDigits(out + 14, secondOfDay / 60 % 60);
    putTwoDigits(out + 17, secondOfDay % 60);
    return text;
}

std::string formatISO8601(Date date) {
    const auto characters = iso8601Characters(date);
    return {characters.data(), characters.size()};
}

std::optional<Date> parseISO8601(std::string_view text) {
    Scanner scanner(text);
    const year years{static_cast<int>(scanner.digits(4))};
    scanner.take('-');
    const month months{scanner.digits(2)};
    scanner.take('-');
    const year_month_day civil = years / months / day{scanner.digits(2)};
    scanner.take('T');
    const hours hour{scanner.digits(2, 23)};
    scanner.take(':');
    const minutes minute{scanner.digits(2, 59)};
    scanner.take(':');
    const seconds second{scanner.digits(2, 59)};
    const seconds offset = scanOffset(scanner);
    if (!scanner.finished() || !civil.ok())
        return std::nullopt;
    return Date{sys_days{civil} + hour + minute + second - offset};
}

} // namespace quillorn
