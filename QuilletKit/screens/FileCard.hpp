// One loaded file on the home screen: a thumbnail of its first page, its name, what the
// analysis found, and a button for each recommendation. While the analysis runs the card says
// so with a busy bar; when it failed, it says why.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QFrame>

class QHBoxLayout;
class QLabel;
class QProgressBar;

namespace quillet {

class FileCard : public QFrame {
    Q_OBJECT

  public:
    static constexpr QSize thumbnailBox{84, 108};

    FileCard(const ScreenContext& context, QString path, QWidget* parent = nullptr);

    const QString& path() const { return path_; }
    /// Shows what the model knows now (analysis, its progress or its failure).
    void refresh();
    void setThumbnail(const QImage& image);

  signals:
    void inspectRequested(const QString& path);

  private:
    void fillDetails(const PDFAnalysis& analysis);
    void fillActions(const PDFAnalysis& analysis);

    ScreenContext context_;
    QString path_;
    QLabel* thumbnail_;
    QLabel* details_;
    QProgressBar* busy_;
    QHBoxLayout* actions_;
};

} // namespace quillet
