#include "app/ServicesProvider.hpp"

#include "app/AppModel.hpp"
#include "app/ServicesRouter.hpp"

namespace quillet {

namespace {

QStringList payloadOf(const QVariantList& parameter) {
    QStringList items;
    for (const QVariant& value : parameter) {
        if (value.metaType() == QMetaType::fromType<QStringList>()) {
            items << value.toStringList();
        } else if (value.metaType() == QMetaType::fromType<QString>()) {
            items << value.toString();
        }
    }
    return items;
}

} // namespace

ServicesProvider::ServicesProvider(AppModel* model, std::function<void()> bringToFront,
                                   QObject* parent)
    : QObject(parent), model_(model), bringToFront_(std::move(bringToFront)) {
}

bool ServicesProvider::activateAction(const QString& name, const QVariantList& parameter) {
    if (!ServicesRouter::words().contains(name)) {
        return false;
    }
    route(name, payloadOf(parameter));
    return true;
}

QVariantList ServicesProvider::actionParameter(const QList<QUrl>& urls) {
    QStringList uris;
    for (const QUrl& url : urls) {
        uris << url.toString(QUrl::FullyEncoded);
    }
    return {QVariant(uris)};
}

void ServicesProvider::route(const QString& word, const QStringList& payload) {
    const auto plan = ServicesRouter::plan(word);
    if (!plan || model_.isNull()) {
        return;
    }
    QList<QUrl> urls = ServicesRouter::fileURLs(payload);
    if (payload.isEmpty() && chooseFiles) {
        if (bringToFront_) {
            bringToFront_();
        }
        urls = chooseFiles();
    }
    if (urls.isEmpty()) {
        return;
    }
    QStringList paths;
    for (const QUrl& url : urls) {
        paths << url.toLocalFile();
    }
    model_->setFiles(paths);
    model_->run(plan->operation, plan->parameters, paths);
    if (bringToFront_) {
        bringToFront_();
    }
}

} // namespace quillet
