#include "Desktop/SingleInstance.h"

#include "App/WindowOnBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace quillorn {

namespace {

constexpr int patience = 2000; // ms

} // namespace

SingleInstance::Outcome SingleInstance::claim(const Request& request) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Outcome::first;
    new ApplicationAdaptor(*this);
    bus.registerObject(windowbus::path, this);
    if (bus.registerService(windowbus::name))
        return Outcome::first;

    const auto callTo = [](const char* method) {
        return QDBusMessage::createMethodCall(windowbus::name, windowbus::path, windowbus::interface, method);
    };
    QDBusMessage call;
    if (request.quickAdd)
        call = callTo("ActivateAction") << quickAddAction << QVariantList() << QVariantMap();
    else if (!request.address.isEmpty())
        call = callTo("Open") << QStringList{request.address} << QVariantMap();
    else
        call = callTo("Activate") << QVariantMap();
    // One that doesn't answer is not one that shows a window.
    return bus.call(call, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage ? Outcome::handedOver
                                                                                       : Outcome::first;
}

} // namespace quillorn
