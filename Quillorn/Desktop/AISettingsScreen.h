#pragma once

#include "Desktop/Screen.h"
#include "Views/AISettingsView.h"

namespace quillorn {

class AISettingsScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QString endpoint READ endpoint WRITE setEndpoint NOTIFY changed)
    Q_PROPERTY(QString model READ model WRITE setModel NOTIFY changed)
    Q_PROPERTY(QString apiKey READ apiKey WRITE setApiKey NOTIFY changed)
    Q_PROPERTY(int reasoning READ reasoning WRITE setReasoning NOTIFY changed)
    Q_PROPERTY(QStringList reasoningLabels READ reasoningLabels CONSTANT)
    Q_PROPERTY(QStringList modelRows READ modelRows NOTIFY changed)
    Q_PROPERTY(bool isLoadingModels READ isLoadingModels NOTIFY changed)
    Q_PROPERTY(QString modelLoadError READ modelLoadError NOTIFY changed)
    Q_PROPERTY(bool isTesting READ isTesting NOTIFY changed)
    Q_PROPERTY(QString testButton READ testButton NOTIFY changed)
    Q_PROPERTY(QString testResult READ testResult NOTIFY changed)
    Q_PROPERTY(bool isGoodResult READ isGoodResult NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    AISettingsScreen(HttpClient& client, SettingsStore& settings);

    QString endpoint() const { return toQString(m_view.endpoint()); }
    void setEndpoint(const QString& endpoint) {
        attempt([&] { m_view.setEndpoint(endpoint.toStdString()); });
    }
    QString model() const { return toQString(m_view.model()); }
    void setModel(const QString& model) {
        attempt([&] { m_view.setModel(model.toStdString()); });
    }
    QString apiKey() const { return toQString(m_view.apiKey()); }
    void setApiKey(const QString& key) {
        attempt([&] { m_view.setApiKey(key.toStdString()); });
    }
    /// The place of the chosen level.
    int reasoning() const;
    void setReasoning(int level);
    static QStringList reasoningLabels();
    QStringList modelRows() const;
    bool isLoadingModels() const { return m_view.isLoadingModels(); }
    QString modelLoadError() const { return toQString(m_view.modelLoadError().value_or("")); }
    bool isTesting() const { return m_view.isTesting(); }
    QString testButton() const { return toQString(m_view.testButton()); }
    QString testResult() const { return toQString(m_view.testResult().value_or("")); }
    bool isGoodResult() const { return m_view.isGoodResult(); }
    static QVariantMap words();

    Q_INVOKABLE void appear() { m_view.appear(); }
    Q_INVOKABLE void useVibeProxy() {
        attempt([&] { m_view.useVibeProxy(); });
    }
    Q_INVOKABLE void reloadModels() { m_view.reloadModels(); }
    Q_INVOKABLE void testConnection() { m_view.testConnection(); }

  private:
    AISettingsView m_view;
    Observation m_changes;
};

} // namespace quillorn
