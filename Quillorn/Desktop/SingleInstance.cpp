#include "Desktop/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace quillorn {

namespace {

constexpr auto service = "com.quillorn.Desktop";
constexpr auto path = "/com/quillorn/Desktop";
constexpr auto interface = "org.freedesktop.Application";
constexpr int patience = 2000; // ms

} // namespace

SingleInstance::Outcome SingleInstance::claim(const Request& request) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Outcome::first;
    new ApplicationAdaptor(*this);
    bus.registerObject(path, this);
    if (bus.registerService(service))
        return Outcome::first;

    const auto callTo = [](const char* method) {
        return QDBusMessage::createMethodCall(service, path, interface, method);
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
