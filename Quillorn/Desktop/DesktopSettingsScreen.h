#pragma once

#include "Desktop/Screen.h"
#include "Views/DesktopSettingsView.h"

namespace quillorn {

/// How the program stands in the desktop, in the pane of the general settings.
class DesktopSettingsScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(bool startsAtLogin READ startsAtLogin WRITE setStartsAtLogin NOTIFY changed)
    Q_PROPERTY(QString loginProblem READ loginProblem NOTIFY changed)
    Q_PROPERTY(bool keepsRunning READ keepsRunning WRITE setKeepsRunning NOTIFY changed)
    Q_PROPERTY(bool hasShortcut READ hasShortcut NOTIFY changed)
    Q_PROPERTY(bool wantsShortcut READ wantsShortcut WRITE setWantsShortcut NOTIFY changed)
    Q_PROPERTY(QString shortcutHelp READ shortcutHelp NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    explicit DesktopSettingsScreen(const DesktopSettingsView::Environment& environment)
        : m_view(environment),
          m_changes(m_view.observe(telling())) {}

    bool startsAtLogin() const { return m_view.startsAtLogin(); }
    void setStartsAtLogin(bool starts) {
        attempt([&] { m_view.setStartsAtLogin(starts); });
    }
    QString loginProblem() const { return toQString(m_view.loginProblem()); }
    bool keepsRunning() const { return m_view.keepsRunning(); }
    void setKeepsRunning(bool keeps) {
        attempt([&] { m_view.setKeepsRunning(keeps); });
    }
    bool hasShortcut() const { return m_view.hasShortcut(); }
    bool wantsShortcut() const { return m_view.wantsShortcut(); }
    void setWantsShortcut(bool wants) {
        attempt([&] { m_view.setWantsShortcut(wants); });
    }
    QString shortcutHelp() const { return toQString(m_view.shortcutHelp()); }
    static QVariantMap words() {
        using View = DesktopSettingsView;
        return {{"title", toVariant(View::title)},           {"titleSymbol", toVariant(View::titleSymbol)},
                {"loginLabel", toVariant(View::loginLabel)}, {"trayLabel", toVariant(View::trayLabel)},
                {"trayHelp", toVariant(View::trayHelp)},     {"shortcutLabel", toVariant(View::shortcutLabel)}};
    }

    Q_INVOKABLE void appear() { m_view.appear(); }

  private:
    DesktopSettingsView m_view;
    Observation m_changes;
};

} // namespace quillorn
