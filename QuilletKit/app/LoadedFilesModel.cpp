#include "app/LoadedFilesModel.hpp"

#include "app/AppModel.hpp"
#include "app/PageRenderService.hpp"
#include "app/Texts.hpp"

#include <QFileInfo>
#include <QGuiApplication>

#include <cmath>

namespace quillet {

namespace {

PageRenderService::Request firstPage(const QString& path) {
    const qreal ratio = qGuiApp != nullptr ? qGuiApp->devicePixelRatio() : 1.0;
    return {path, 0, LoadedFilesModel::thumbnailBox, ratio};
}

} // namespace

LoadedFilesModel::LoadedFilesModel(AppModel& model, PageRenderService* renders, QObject* parent)
    : QAbstractListModel(parent), model_(model), renders_(renders), files_(model.files()),
      blank_(thumbnailBox) {
    setRows();
    blank_.fill(Qt::transparent);
    if (renders_ != nullptr) {
        connect(renders_, &PageRenderService::rendered, this, &LoadedFilesModel::thumbnailRendered);
    }
    connect(&model_, &AppModel::filesChanged, this, [this] {
        beginResetModel();
        files_ = model_.files();
        setRows();
        endResetModel();
    });
    connect(&model_, &AppModel::analysisChanged, this, &LoadedFilesModel::analysisChanged);
}

void LoadedFilesModel::setRows() {
    rows_.clear();
    rows_.reserve(files_.size());
    for (int row = 0; row < static_cast<int>(files_.size()); ++row) {
        rows_.insert(files_.at(row), row);
    }
}

int LoadedFilesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(files_.size());
}

void LoadedFilesModel::analysisChanged(const QString& path) {
    const auto row = rowOf(path);
    if (row >= 0) {
        emit dataChanged(index(static_cast<int>(row)), index(static_cast<int>(row)));
    }
}

QString LoadedFilesModel::summary(const QString& path) const {
    if (model_.isAnalyzing(path)) {
        return tr("Analysing…");
    }
    if (const QString error = model_.analysisError(path); !error.isEmpty()) {
        return tr("could not be read: %1").arg(error);
    }
    const QFileInfo info(path);
    if (const PDFAnalysis* analysis = model_.analysis(path)) {
        QStringList parts{tr("%n page(s)", nullptr, analysis->pageCount),
                          Texts::bytes(analysis->fileSize)};
        if (analysis->pdfVersion) {
            parts << tr("PDF %1").arg(QString::fromStdString(*analysis->pdfVersion));
        }
        if (const auto images = static_cast<int>(analysis->images().size()); images > 0) {
            parts << tr("%n image(s), %1 DPI on average", nullptr, images)
                         .arg(std::lround(analysis->averageImageDPI()));
        }
        return parts.join(QStringLiteral(" · "));
    }
    if (!info.exists()) {
        return tr("missing");
    }
    return tr("%1 file · %2").arg(info.suffix().toUpper(), Texts::bytes(info.size()));
}

QVariant LoadedFilesModel::thumbnail(const QString& path, bool request) const {
    if (const auto found = thumbnails_.find(path); found != thumbnails_.end()) {
        return *found;
    }
    if (!request || renders_ == nullptr || requested_.contains(path)) {
        return blank_;
    }
    // The analysis reads the file in a worker process first: a file that cannot even be
    // analysed is never opened here. A row in sight gets its analysis if it has none yet
    // (started from the event loop, not while a view is painting).
    if (model_.analysis(path) == nullptr) {
        if (!model_.isAnalyzing(path) && model_.analysisError(path).isEmpty()) {
            QMetaObject::invokeMethod(
                &model_, [model = &model_, path] { model->startAnalysis(path); },
                Qt::QueuedConnection);
        }
        return blank_;
    }
    requested_.insert(path);
    const auto page = firstPage(path);
    pending_.insert(page.key(), path);
    renders_->render(page);
    return blank_;
}

void LoadedFilesModel::thumbnailRendered(const QString& key, const QImage& image) {
    const QString path = pending_.take(key);
    if (path.isEmpty()) {
        return;
    }
    thumbnails_.insert(path, QPixmap::fromImage(image));
    if (const auto row = rowOf(path); row >= 0) {
        emit dataChanged(index(static_cast<int>(row)), index(static_cast<int>(row)),
                         {Qt::DecorationRole});
    }
}

QVariant LoadedFilesModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const QString& path = files_.at(index.row());
    switch (role) {
    case Qt::DisplayRole: return QFileInfo(path).fileName() + QLatin1Char('\n') + summary(path);
    case Qt::DecorationRole: return thumbnail(path, false);
    case ThumbnailRole: return thumbnail(path, true);
    case Qt::ToolTipRole:
    case PathRole: return path;
    case SummaryRole: return summary(path);
    default: return {};
    }
}

} // namespace quillet
