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
    QVariantMap platformData;
    if (!request.token.isEmpty())
        platformData = {{windowbus::activationToken, request.token}, {windowbus::startupId, request.token}};
    QDBusMessage call;
    if (request.quickAdd)
        call = callTo("ActivateAction") << quickAddAction << QVariantList() << platformData;
    else if (!request.address.isEmpty())
        call = callTo("Open") << QStringList{request.address} << platformData;
    else
        call = callTo("Activate") << platformData;
    // One that doesn't answer is not one that shows a window.
    return bus.call(call, QDBus::Block, patience).type() == QDBusMessage::ReplyMessage ? Outcome::handedOver
                                                                                       : Outcome::first;
}

QString ApplicationAdaptor::tokenIn(const QVariantMap& platformData) {
    const QString token = platformData[windowbus::activationToken].toString();
    return token.isEmpty() ? platformData[windowbus::startupId].toString() : token;
}

} // namespace quillorn
