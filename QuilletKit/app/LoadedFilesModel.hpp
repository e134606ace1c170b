// The model's loaded files as a list model: one row per file with its name, and a second line
// saying what is known about it (its analysis, that one runs, or why it failed). With a render
// service, a PDF's row shows a thumbnail of its first page once it has been drawn off the main
// thread; until then the row has an empty picture of the same size. Only a PDF whose analysis
// (in a worker process) succeeded is drawn, and only once a view asks for `ThumbnailRole`,
// which views do for the rows they paint; a painted PDF row without analysis gets one.
#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QPixmap>
#include <QSet>

namespace quillet {

class AppModel;
class PageRenderService;

class LoadedFilesModel : public QAbstractListModel {
    Q_OBJECT

  public:
    enum Role { PathRole = Qt::UserRole + 1, SummaryRole, ThumbnailRole };

    static constexpr QSize thumbnailBox{36, 46};

    /// `renders` (optional) draws the thumbnails; it must outlive the model.
    explicit LoadedFilesModel(AppModel& model, PageRenderService* renders = nullptr,
                              QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// "12 pages · 3.4 MB · PDF 1.7 · 5 images, 220 DPI on average", "Analysing…", "could not be
    /// read: …", or for a file without analysis its kind and size.
    QString summary(const QString& path) const;

  private:
    void analysisChanged(const QString& path);
    QVariant thumbnail(const QString& path, bool request) const;
    void thumbnailRendered(const QString& key, const QImage& image);

    AppModel& model_;
    PageRenderService* renders_;
    QStringList files_;
    QHash<QString, int> rows_; ///< row of each path in files_: a folder may load 50,000 files
    int rowOf(const QString& path) const { return rows_.value(path, -1); }
    void setRows();
    QPixmap blank_;
    QHash<QString, QPixmap> thumbnails_;      ///< by path
    mutable QHash<QString, QString> pending_; ///< render key → path, asked for and not yet drawn
    mutable QSet<QString> requested_;         ///< paths whose thumbnail was asked for
};

} // namespace quillet
