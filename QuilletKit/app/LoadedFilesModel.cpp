#include "app/LoadedFilesModel.hpp"

#include "app/AppModel.hpp"
#include "app/Texts.hpp"

#include <QFileInfo>

#include <cmath>

namespace quillet {

LoadedFilesModel::LoadedFilesModel(AppModel& model, QObject* parent)
    : QAbstractListModel(parent), model_(model), files_(model.files()) {
    connect(&model_, &AppModel::filesChanged, this, [this] {
        beginResetModel();
        files_ = model_.files();
        endResetModel();
    });
    connect(&model_, &AppModel::analysisChanged, this, &LoadedFilesModel::analysisChanged);
}

int LoadedFilesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(files_.size());
}

void LoadedFilesModel::analysisChanged(const QString& path) {
    const auto row = files_.indexOf(path);
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

QVariant LoadedFilesModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const QString& path = files_.at(index.row());
    switch (role) {
    case Qt::DisplayRole: return QFileInfo(path).fileName() + QLatin1Char('\n') + summary(path);
    case Qt::ToolTipRole:
    case PathRole: return path;
    case SummaryRole: return summary(path);
    default: return {};
    }
}

} // namespace quillet
