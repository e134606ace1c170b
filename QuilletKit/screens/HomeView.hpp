// The home screen: one card per loaded file with its analysis and the actions it recommends;
// "Inspect" opens everything the analysis knows in the inspector.
#pragma once

#include "app/SlicedLoop.hpp"
#include "screens/ScreenContext.hpp"

#include <QHash>
#include <QSet>
#include <QTimer>
#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace quillet {

class FileCard;

class HomeView : public QWidget {
    Q_OBJECT

  public:
    explicit HomeView(const ScreenContext& context, QWidget* parent = nullptr);

    /// The cards shown, in file order.
    QList<FileCard*> cards() const;
    /// Cards are made for this many files at most; the rest are counted under them. A card's
    /// wrapped rich text is laid out again on every pass of the list, so the count bounds how
    /// long the window waits for one.
    static constexpr int cardLimit = 50;

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void rebuild();
    void analysisChanged(const QString& path);
    void refreshCards();
    void thumbnailRendered(const QString& key, const QImage& image);
    void inspect(const QString& path);

    ScreenContext context_;
    QVBoxLayout* list_;
    QLabel* empty_;
    QLabel* more_;
    QHash<QString, FileCard*> cardByPath_;
    QHash<QString, QString> pendingThumbnails_; ///< render key → path
    QSet<QString> changed_; ///< cards to refresh on the next turns of the event loop
    QTimer refreshing_;
    SlicedLoop building_;
};

} // namespace quillet
