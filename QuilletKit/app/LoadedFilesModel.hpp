// The model's loaded files as a list model: one row per file with its name, and a second line
// saying what is known about it (its analysis, that one runs, or why it failed).
#pragma once

#include <QAbstractListModel>

namespace quillet {

class AppModel;

class LoadedFilesModel : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role { PathRole = Qt::UserRole + 1, SummaryRole };

    explicit LoadedFilesModel(AppModel& model, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// "12 pages · 3.4 MB · PDF 1.7 · 5 images, 220 DPI on average", "Analysing…", "could not be
    /// read: …", or for a file without analysis its kind and size.
    QString summary(const QString& path) const;

  private:
    void analysisChanged(const QString& path);

    AppModel& model_;
    QStringList files_;
};

} // namespace quillet
