#include "Desktop/ChatScreen.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace quillorn {

namespace {

template <typename Row>
constexpr Role<Row> messageRoles[] = {role<&Row::id>("id"), role<&Row::isUser>("isUser"),
                                      role<&Row::content>("content")};

} // namespace

ChatScreen::ChatScreen(const AIEnvironment& environment, const ChatContext& context)
    : m_view(environment, context),
      m_range(environment.clock, environment.calendar),
      m_model(m_rows, messageRoles<Row>),
      m_changes(m_view.observe([this] { update(); })) {
    update();
}

void ChatScreen::update() {
    std::vector<Row> rows;
    for (AIChatView::Message& message : m_view.messages())
        rows.push_back({message.id, message.role == ChatRole::user, std::move(message.content)});
    m_rows.assign(std::move(rows));
    Q_EMIT changed();
}

QStringList ChatScreen::suggestions() const {
    QStringList all;
    for (const std::string_view suggestion : m_view.suggestions())
        all.append(toQString(suggestion));
    return all;
}

QVariantMap ChatScreen::sendButton() const {
    const AIChatView::SendButton button = m_view.sendButton();
    return {{"symbol", toVariant(button.symbol)}, {"label", toVariant(button.label)}, {"isEnabled", button.isEnabled}};
}

QVariantMap ChatScreen::clearQuestion() const {
    const AIChatView::Confirmation question = m_view.clearConfirmation();
    return {{"title", toVariant(question.title)},
            {"text", toVariant(question.text)},
            {"action", toVariant(question.action)}};
}

QString ChatScreen::copiedMessage() const {
    return m_view.copiedMessageID() ? toQString(m_view.copiedMessageID()->string()) : QString();
}

QVariantList ChatScreen::rangeDays() const {
    QVariantList days;
    for (const std::vector<ReportRangePicker::Day>& week : m_range.weeks())
        for (const ReportRangePicker::Day& day : week)
            days.append(QVariantMap{{"name", toVariant(day.name)},
                                    {"number", day.number},
                                    {"isInMonth", day.isInMonth},
                                    {"isToday", day.isToday},
                                    {"isChosen", day.isChosen}});
    return days;
}

QVariantMap ChatScreen::words() {
    return {{"summaryButton", toVariant(AIChatView::summaryButton)},
            {"clearButton", toVariant(AIChatView::clearButton)},
            {"dismissButton", toVariant(AIChatView::dismissButton)},
            {"settingsButton", toVariant(AIChatView::settingsButton)},
            {"answerLabel", toVariant(AIChatView::answerLabel)},
            {"copyButton", toVariant(AIChatView::copyButton)},
            {"copiedLabel", toVariant(AIChatView::copiedLabel)},
            {"daysLabel", toVariant(ReportRangePicker::label)},
            {"previousMonth", toVariant(ReportRangePicker::previousLabel)},
            {"nextMonth", toVariant(ReportRangePicker::nextLabel)}};
}

void ChatScreen::sendSuggestion(const QString& text) {
    m_view.sendSuggestion(text.toStdString());
}

void ChatScreen::copyForMail(const QString& message, const QString& text) {
    const std::optional<UUID> id = toId(message);
    const std::string html = id ? m_view.copyForOutlook(*id) : "";
    if (html.empty())
        return;
    auto* data = new QMimeData;
    data->setHtml(toQString(html));
    data->setText(text);
    QGuiApplication::clipboard()->setMimeData(data);
}

void ChatScreen::moveRange(int months) {
    if (months < 0)
        m_range.showPreviousMonth();
    else
        m_range.showNextMonth();
    Q_EMIT changed();
}

void ChatScreen::chooseDay(int index) {
    constexpr int daysOfWeek = 7;
    const auto weeks = m_range.weeks();
    if (index < 0 || index >= static_cast<int>(weeks.size()) * daysOfWeek)
        return;
    m_range.choose(
        weeks[static_cast<std::size_t>(index / daysOfWeek)][static_cast<std::size_t>(index % daysOfWeek)].date);
    Q_EMIT changed();
}

void ChatScreen::generateSummary() {
    if (const std::optional<DayRange> range = m_range.range())
        m_view.generateSummary(*range);
}

} // namespace quillorn
