#pragma once

#include <QDBusAbstractAdaptor>
#include <QObject>
#include <QVariantMap>

namespace quillorn {

/// What a .desktop file calls it too.
inline constexpr auto quickAddAction = "quick-add";

/// One window on the user's store: a second start hands over what it was started with, and ends. Without a session bus
/// each start stands for itself.
class SingleInstance final : public QObject {
    Q_OBJECT

  public:
    enum class Outcome { first, handedOver };

    /// What a start asks for.
    struct Request {
        /// A quillorn:// address, or empty.
        QString address{};
        bool quickAdd = false;
        /// By which the window may come to the front.
        QString token{};
    };
    Outcome claim(const Request& request);

  Q_SIGNALS:
    /// The window is wanted, with an address or none.
    void opened(const QString& address, const QString& token);
    void quickAddWanted(const QString& token);
};

/// org.freedesktop.Application, as the desktop and a second start call it.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit ApplicationAdaptor(SingleInstance& instance) : QDBusAbstractAdaptor(&instance), m_instance(instance) {}

  public Q_SLOTS:
    void Activate(const QVariantMap& platformData) { Q_EMIT m_instance.opened({}, tokenIn(platformData)); }
    void Open(const QStringList& addresses, const QVariantMap& platformData) {
        QString token = tokenIn(platformData);
        for (const QString& address : addresses)
            Q_EMIT m_instance.opened(address, std::exchange(token, {}));
    }
    void ActivateAction(const QString& name, const QVariantList&, const QVariantMap& platformData) {
        if (name == quickAddAction)
            Q_EMIT m_instance.quickAddWanted(tokenIn(platformData));
    }

  private:
    static QString tokenIn(const QVariantMap& platformData);

    SingleInstance& m_instance;
};

} // namespace quillorn
