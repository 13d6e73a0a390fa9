#include "Desktop/TimeEntryScreen.h"

#include <QDate>
#include <QTime>

namespace quillorn {

namespace {

constexpr auto dayFormat = "yyyy-MM-dd";

/// "9:05", "09:05" or "9.05".
std::optional<std::chrono::seconds> readTime(const QString& text) {
    const QTime time = QTime::fromString(QString(text).trimmed().replace('.', ':'), "H:m");
    return time.isValid() ? std::optional(std::chrono::seconds(time.msecsSinceStartOfDay() / 1000)) : std::nullopt;
}

QDate toQDate(std::chrono::local_days day) {
    const std::chrono::year_month_day date(day);
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day()))};
}

} // namespace

QString TimeEntryScreen::day() const {
    return toQDate(m_view.date()).toString(dayFormat);
}

QString TimeEntryScreen::timeOf(std::chrono::seconds time) {
    return QTime::fromMSecsSinceStartOfDay(static_cast<int>(time.count()) * 1000).toString("HH:mm");
}

bool TimeEntryScreen::setDay(const QString& text) {
    const QDate date = QDate::fromString(text.trimmed(), dayFormat);
    if (!date.isValid())
        return false;
    using std::chrono::year, std::chrono::month, std::chrono::day;
    m_view.setDate(std::chrono::local_days(std::chrono::year_month_day(
        year(date.year()), month(static_cast<unsigned>(date.month())), day(static_cast<unsigned>(date.day())))));
    return true;
}

bool TimeEntryScreen::setStart(const QString& text) {
    const auto time = readTime(text);
    if (time)
        m_view.setStartTime(*time);
    return time.has_value();
}

bool TimeEntryScreen::setEnd(const QString& text) {
    const auto time = readTime(text);
    if (time)
        m_view.setEndTime(*time);
    return time.has_value();
}

bool TimeEntryScreen::save() {
    bool isSaved = false;
    attempt([&] { isSaved = m_view.save(); });
    return isSaved;
}

QVariantList TimeEntryScreen::choices(const std::vector<TimeEntryFormSheet::Choice>& choices) {
    QVariantList list;
    for (const TimeEntryFormSheet::Choice& choice : choices)
        list.append(QVariantMap{{"id", toVariant(choice.id)}, {"name", toVariant(choice.name)}});
    return list;
}

QVariantList TimeEntryScreen::quick() {
    QVariantList list;
    for (const int minutes : quickMinutes)
        list.append(QVariantMap{{"label", toVariant(quickLabel(minutes))}, {"minutes", minutes}});
    return list;
}

QVariantMap TimeEntryScreen::words() {
    using Sheet = TimeEntryFormSheet;
    return {
        {"projectLabel", toVariant(Sheet::projectLabel)}, {"projectPlaceholder", toVariant(Sheet::projectPlaceholder)},
        {"taskLabel", toVariant(Sheet::taskLabel)},       {"dateLabel", toVariant(Sheet::dateLabel)},
        {"titleLabel", toVariant(Sheet::titleLabel)},     {"titlePlaceholder", toVariant(Sheet::titlePlaceholder)},
        {"notesLabel", toVariant(Sheet::notesLabel)},     {"notesPlaceholder", toVariant(Sheet::notesPlaceholder)},
        {"quickLabel", toVariant(Sheet::quickLabel)},     {"runningLabel", toVariant(Sheet::runningLabel)},
        {"saveButton", toVariant(Sheet::saveButton)},     {"overlapSymbol", toVariant(overlapSymbol)}};
}

} // namespace quillorn
