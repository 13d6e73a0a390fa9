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
    };
    Outcome claim(const Request& request);

  Q_SIGNALS:
    /// The window is wanted, with an address or none.
    void opened(const QString& address);
    void quickAddWanted();
};

/// org.freedesktop.Application, as the desktop and a second start call it.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit ApplicationAdaptor(SingleInstance& instance) : QDBusAbstractAdaptor(&instance), m_instance(instance) {}

  public Q_SLOTS:
    void Activate(const QVariantMap&) { Q_EMIT m_instance.opened({}); }
    void Open(const QStringList& addresses, const QVariantMap&) {
        for (const QString& address : addresses)
            Q_EMIT m_instance.opened(address);
    }
    void ActivateAction(const QString& name, const QVariantList&, const QVariantMap&) {
        if (name == quickAddAction)
            Q_EMIT m_instance.quickAddWanted();
    }

  private:
    SingleInstance& m_instance;
};

} // namespace quillorn
