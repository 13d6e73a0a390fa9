#include "Desktop/ActivationToken.h"
#include "Desktop/DesktopOptions.h"
#include "Desktop/Shell.h"
#include "Desktop/SingleInstance.h"
#include "Platform/Process.h"
#include "Platform/StandardStreams.h"
#include "Platform/SystemLog.h"
#include "Platform/TerminationSignals.h"

#include <QGuiApplication>
#include <exception>
#include <iostream>

namespace quillorn {
namespace {

int run(int count, char** arguments) {
    const ProcessInfo process = ProcessInfo::of(count, arguments);
    DesktopOptions options;
    if (const std::optional<int> status = DesktopOptions::read(process.arguments, options))
        return *status;

    Shell::prepare();
    QGuiApplication::setApplicationName("Quillorn");
    QGuiApplication::setApplicationVersion(QUILLORN_VERSION);
    QGuiApplication::setDesktopFileName("com.quillorn.Desktop");
    // No thread has been started so far, as it has to be.
    const TerminationSignals termination([](int) { QMetaObject::invokeMethod(qApp, &QCoreApplication::quit); });
    raiseDescriptorLimit();
    const QString token = ActivationToken::ofStart();
    int one = 1; // the options are ours
    QGuiApplication application(one, arguments);

    SingleInstance instance;
    const QString address = toQString(options.address);
    // What is not the user's store stands for itself.
    const bool isUsersStore = !options.isSample && !LaunchFlags::of(process).isDemo;
    if (isUsersStore && instance.claim({address, options.quickAdd, token}) == SingleInstance::Outcome::handedOver)
        return 0;
    StandardErrorLog log;
    std::optional<SampleStore> sample;
    if (options.isSample)
        sample.emplace();
    // Elsewhere the desktop knows the window of a start by itself.
    const bool needsToken = !token.isEmpty() && QGuiApplication::platformName().startsWith("wayland");
    if (needsToken)
        ActivationToken::offer(token);
    Shell shell(process, options.scheme, log, sample ? &*sample : nullptr,
                options.quickAdd ? Shell::Start::quickAdd : Shell::Start::window);
    QObject::connect(&instance, &SingleInstance::opened,
                     [&](const QString& asked, const QString& with) { shell.open(asked, with); });
    QObject::connect(&instance, &SingleInstance::quickAddWanted, [&](const QString& with) { shell.quickAdd(with); });
    if (!address.isEmpty() || (needsToken && !options.quickAdd))
        shell.open(address);
    return QGuiApplication::exec();
}

} // namespace
} // namespace quillorn

int main(int count, char** arguments) {
    try {
        quillorn::prepareStandardStreams();
        return quillorn::run(count, arguments);
    } catch (const std::exception& error) {
        std::cerr << "quillorn-desktop: " << error.what() << '\n';
        return 1;
    }
}
