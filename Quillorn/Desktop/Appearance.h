#pragma once

#include <QObject>
#include <QVariant>

class QDBusMessage;
class QDBusVariant;

namespace quillorn {

/// How the desktop asks programs to look, also while it is changed. Without a desktop that says so: light.
class Appearance final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed)
    Q_PROPERTY(bool isHighContrast READ isHighContrast NOTIFY changed)
    Q_PROPERTY(bool isStill READ isStill NOTIFY changed)
    Q_PROPERTY(double textScale READ textScale NOTIFY changed)

  public:
    enum class Scheme { system, light, dark };

    /// With another scheme than the system's that one stays.
    explicit Appearance(Scheme scheme);

    bool isDark() const { return m_scheme == Scheme::dark; }
    bool isHighContrast() const { return m_isHighContrast; }
    /// Whether nothing should move by itself.
    bool isStill() const { return m_isStill; }
    double textScale() const { return m_textScale; }

  Q_SIGNALS:
    void changed();

  public Q_SLOTS:
    /// The desktop says what one of its settings is.
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

  private:
    void read(const QString& group, const QString& key);
    void take(const QString& key, const QVariant& value);
    /// The toolkit's own colours, for the frame that it draws around a window.
    void setPalette() const;

    const bool m_isFixed;
    Scheme m_scheme;
    bool m_isHighContrast = false;
    bool m_isStill = false;
    double m_textScale = 1;
};

} // namespace quillorn
