#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Views/AIChatView.h"
#include "Views/ReportRangePicker.h"

namespace quillorn {

/// A conversation, with the month on which the days of a report are chosen.
class ChatScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* messages READ messages CONSTANT)
    Q_PROPERTY(QString inputText READ inputText WRITE setInputText NOTIFY changed)
    Q_PROPERTY(bool isConfigured READ isConfigured NOTIFY changed)
    Q_PROPERTY(bool isStreaming READ isStreaming NOTIFY changed)
    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)
    Q_PROPERTY(QString prompt READ prompt NOTIFY changed)
    Q_PROPERTY(QString banner READ banner NOTIFY changed)
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY changed)
    Q_PROPERTY(QStringList suggestions READ suggestions NOTIFY changed)
    Q_PROPERTY(QVariantMap sendButton READ sendButton NOTIFY changed)
    Q_PROPERTY(QVariantMap clearQuestion READ clearQuestion NOTIFY changed)
    Q_PROPERTY(QString copiedMessage READ copiedMessage NOTIFY changed)
    Q_PROPERTY(QString rangeTitle READ rangeTitle NOTIFY changed)
    Q_PROPERTY(QVariantList rangeDays READ rangeDays NOTIFY changed)
    Q_PROPERTY(QString rangeLabel READ rangeLabel NOTIFY changed)
    Q_PROPERTY(bool hasRange READ hasRange NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    ChatScreen(const AIEnvironment& environment, const ChatContext& context);

    QAbstractItemModel* messages() { return &m_model; }
    QString inputText() const { return toQString(m_view.inputText()); }
    void setInputText(const QString& text) { m_view.setInputText(text.toStdString()); }
    bool isConfigured() const { return m_view.isConfigured(); }
    bool isStreaming() const { return m_view.isStreaming(); }
    QString status() const { return toQString(m_view.statusText().value_or("")); }
    QString error() const { return toQString(m_view.error().value_or("")); }
    QString prompt() const { return toQString(m_view.prompt()); }
    QString banner() const { return toQString(m_view.banner().value_or("")); }
    QString emptyTitle() const { return toQString(m_view.emptyTitle()); }
    QStringList suggestions() const;
    QVariantMap sendButton() const;
    QVariantMap clearQuestion() const;
    QString copiedMessage() const;
    QString rangeTitle() const { return toQString(m_range.title()); }
    /// {name, number, isInMonth, isToday, isChosen}, week by week.
    QVariantList rangeDays() const;
    QString rangeLabel() const { return toQString(m_range.generateLabel()); }
    bool hasRange() const { return m_range.range().has_value(); }
    static QVariantMap words();

    Q_INVOKABLE void send() { m_view.send(); }
    Q_INVOKABLE void stop() { m_view.stop(); }
    Q_INVOKABLE void sendSuggestion(const QString& text);
    Q_INVOKABLE void dismissError() { m_view.dismissError(); }
    /// Leads the settings window to its tab.
    Q_INVOKABLE void openSettings() { m_view.openSettings(); }
    Q_INVOKABLE void clear() { m_view.clear(); }
    /// Puts the message on the clipboard as HTML and as text.
    Q_INVOKABLE void copyForMail(const QString& message, const QString& text);
    Q_INVOKABLE void moveRange(int months);
    Q_INVOKABLE void chooseDay(int index);
    Q_INVOKABLE void generateSummary();

  private:
    struct Row {
        UUID id;
        bool isUser;
        std::string content;

        bool operator==(const Row&) const = default;
    };

    void update();

    AIChatView m_view;
    ReportRangePicker m_range;
    ObservableList<Row> m_rows;
    ListModel<Row> m_model;
    Observation m_changes;
};

} // namespace quillorn
