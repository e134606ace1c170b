// quillet-app [FILES...]: the desktop application. One instance per session: a second launch
// hands its files to the running one and exits.
// quillet-app --service WORD FILES...: a file manager's action on the selected files; the
// running instance performs it (ActivateAction), or the instance this launch starts.
// quillet-app --gapplication-service: started by D-Bus activation; no window until Activate or
// Open asks for one, and without one it quits a minute after its last automation action.
#include "app/AppRelaunch.hpp"
#include "app/ApplicationBus.hpp"
#include "app/AutomationBus.hpp"
#include "app/BackgroundLifetime.hpp"
#include "app/IntentRunner.hpp"
#include "app/QuilletApp.hpp"
#include "app/ServicesProvider.hpp"
#include "app/ServicesRouter.hpp"
#include "screens/Appearance.hpp"
#include "screens/MainWindow.hpp"
#include "tasks/AppDirectories.hpp"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

#include <cstdio>

using namespace quillet;

namespace {

/// Arguments as locations: file URIs as they are, anything else as a path from here.
QList<QUrl> locations(const QStringList& arguments) {
    QList<QUrl> urls;
    for (const QString& argument : arguments) {
        const QUrl url(argument);
        urls << (url.scheme() == QStringLiteral("file")
                     ? url
                     : QUrl::fromLocalFile(QFileInfo(argument).absoluteFilePath()));
    }
    return urls;
}

} // namespace

int main(int argc, char** argv) {
    QApplication::setOrganizationName(QStringLiteral("quillet"));
    QApplication::setApplicationName(QStringLiteral("quillet"));
    QApplication::setApplicationVersion(QStringLiteral(QUILLET_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("org.quillet.Quillet"));
    QApplication qt(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Quillet, a PDF toolkit that works on your "
                                                    "own machine."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("files"),
                                 QStringLiteral("PDFs, images or "
                                                "folders to load."),
                                 QStringLiteral("[FILES...]"));
    const QCommandLineOption serviceOption(
        QStringLiteral("service"),
        QCoreApplication::translate("main", "Perform a file manager's action on the files: "
                                            "compress, merge, convert, clean, ocr or images."),
        QStringLiteral("word"));
    parser.addOption(serviceOption);
    // The launcher's actions: the same words, the files chosen in the window.
    const QCommandLineOption actionOption(
        QStringLiteral("action"),
        QCoreApplication::translate("main", "Choose files, then act on them: compress, merge, "
                                            "convert, clean, ocr or images."),
        QStringLiteral("word"));
    parser.addOption(actionOption);
    const QCommandLineOption backgroundOption(
        QStringLiteral("gapplication-service"),
        QCoreApplication::translate("main", "Start for the session bus only: no window until one "
                                            "is asked for."));
    parser.addOption(backgroundOption);
    parser.process(qt);
    const bool background = parser.isSet(backgroundOption);
    const QList<QUrl> files = locations(parser.positionalArguments());
    const bool desktopAction = parser.isSet(actionOption);
    const bool serviceAsked = parser.isSet(serviceOption) || desktopAction;
    const QString service =
        desktopAction ? parser.value(actionOption) : parser.value(serviceOption);
    if (serviceAsked && !ServicesRouter::plan(service)) {
        std::fputs(qPrintable(QCoreApplication::translate("main", "quillet-app: unknown action "
                                                                  "\"%1\"; use compress, merge, "
                                                                  "convert, clean, ocr or images\n")
                                  .arg(service)),
                   stderr);
        return 2;
    }

    // Declared before the bus: the exported interface uses it until the bus goes.
    IntentRunner intents(TaskQueueService::defaultWorkerCommand());
    ApplicationBus bus;
    AutomationBus automation(&bus, intents);
    if (bus.claim() == ApplicationBus::Claim::anotherInstance) {
        if (background) {
            return 0;
        }
        const bool handedOver =
            serviceAsked ? ApplicationBus::handOverAction(
                               service, desktopAction ? QVariantList{}
                                                      : ServicesProvider::actionParameter(files))
                         : ApplicationBus::handOver(files);
        if (handedOver) {
            return 0;
        }
        // A second instance beside a stuck one would run the same queue twice.
        std::fputs("quillet-app: Quillet is already running but does not answer; close it and "
                   "try again\n",
                   stderr);
        return 1;
    }

    AppSettings settings(AppSettings::applicationStore());
    QuilletApp::installTranslations(settings.effectiveLanguage());
    Appearance::apply(settings.appearance());
    QObject::connect(&settings, &AppSettings::appearanceChanged, &qt,
                     [&settings] { Appearance::apply(settings.appearance()); });

    QuilletApp app(settings, AppDirectories::support(), TaskQueueService::defaultWorkerCommand());
    MainWindow window(app, [&bus] { AppRelaunch::relaunch([&bus] { bus.release(); }); });
    QObject::connect(&bus, &ApplicationBus::activateRequested, &window, &MainWindow::bringToFront);
    QObject::connect(&bus, &ApplicationBus::openRequested, &window,
                     [&app](const QList<QUrl>& urls) { app.model().acceptDropped(urls); });
    QObject::connect(&app, &QuilletApp::quitRequested, &window, &MainWindow::quitNow);
    ServicesProvider services(&app.model(), [&window] { window.bringToFront(); });
    QObject::connect(&bus, &ApplicationBus::actionRequested, &services,
                     &ServicesProvider::activateAction);

    services.chooseFiles = [&window] { return window.chooseFiles(); };

    std::unique_ptr<BackgroundLifetime> lifetime;
    if (background) {
        lifetime = std::make_unique<BackgroundLifetime>();
        lifetime->watchWindow(&window);
        lifetime->setBusy(intents.isBusy());
        QObject::connect(&intents, &IntentRunner::busyChanged, lifetime.get(),
                         &BackgroundLifetime::setBusy);
        QObject::connect(lifetime.get(), &BackgroundLifetime::quitRequested, &window,
                         &MainWindow::quitNow);
    } else {
        window.show();
    }
    if (serviceAsked) {
        services.activateAction(service, desktopAction ? QVariantList{}
                                                       : ServicesProvider::actionParameter(files));
    } else {
        app.model().acceptDropped(files);
    }
    return QApplication::exec();
}
