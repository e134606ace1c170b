#include "app/QuilletApp.hpp"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace quillet {

QuilletApp::QuilletApp(AppSettings& settings, const std::filesystem::path& supportFolder,
                       const QStringList& workerCommand, QObject* parent)
    : QObject(parent), settings_(settings), history_(supportFolder / "history.json"),
      queue_(std::make_unique<TaskQueueService>(history_, supportFolder / "queue.json",
                                                workerCommand)),
      analysis_(std::make_unique<AnalysisService>(workerCommand)),
      model_(std::make_unique<AppModel>(*queue_, history_, settings_, *analysis_,
                                        supportFolder / "presets.json")),
      renders_(std::make_unique<PageRenderService>()) {
    connect(queue_.get(), &TaskQueueService::recordsChanged, this, &QuilletApp::queueChanged);
    const auto applyRenderTimeout = [this] {
        renders_->setRenderTimeout(std::chrono::seconds(settings_.renderTimeoutSeconds()));
    };
    applyRenderTimeout();
    connect(&settings_, &AppSettings::renderTimeoutChanged, this, applyRenderTimeout);
}

QuilletApp::~QuilletApp() = default;

bool QuilletApp::lastWindowClosed() {
    if (!queue_->isBusy()) {
        return true;
    }
    waitingForQueue_ = true;
    return false;
}

void QuilletApp::windowShown() {
    waitingForQueue_ = false;
}

void QuilletApp::queueChanged() {
    if (waitingForQueue_ && !queue_->isBusy()) {
        waitingForQueue_ = false;
        emit quitRequested();
    }
}

bool QuilletApp::installTranslations(const QString& language) {
    // Dates and numbers follow the language shown, not a locale the session happens to have.
    QLocale::setDefault(QLocale(language));
    auto* app = QCoreApplication::instance();
    auto* own = new QTranslator(app);
    const bool found = own->load(QStringLiteral("quillet_") + language, QStringLiteral(":/i18n"));
    if (found) {
        QCoreApplication::installTranslator(own);
    } else {
        delete own;
    }
    if (language != QStringLiteral("en")) {
        auto* standard = new QTranslator(app);
        if (standard->load(QStringLiteral("qtbase_") + language,
                           QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
            QCoreApplication::installTranslator(standard);
        } else {
            delete standard;
        }
    }
    return found;
}

} // namespace quillet
