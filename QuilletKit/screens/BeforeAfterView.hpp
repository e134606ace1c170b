// The same page of an original and of its result side by side, at the same zoom, with page
// navigation and both file sizes. The pages are drawn by the render service off the main thread.
#pragma once

#include <QImage>
#include <QWidget>

class QLabel;
class QPushButton;
class QTimer;

namespace quillet {

class PageRenderService;

class BeforeAfterView : public QWidget {
    Q_OBJECT

  public:
    explicit BeforeAfterView(PageRenderService& renders, QWidget* parent = nullptr);

    /// Compares `original` with `result`; `pageCount` (0 when unknown) bounds the navigation.
    void compare(const QString& original, const QString& result, int pageCount);
    bool isComparing() const { return !original_.isEmpty(); }
    int page() const { return page_; }
    void showPage(int index);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void requestPages();
    void rendered(const QString& key, const QImage& image);
    void failed(const QString& key, const QString& error);
    QSize pageBox() const;
    void showImages();

    PageRenderService& renders_;
    QString original_;
    QString result_;
    int pageCount_ = 0;
    int page_ = 0;
    QString beforeKey_;
    QString afterKey_;
    QImage beforeImage_;
    QImage afterImage_;
    QLabel* before_;
    QLabel* after_;
    QLabel* beforeSize_;
    QLabel* afterSize_;
    QLabel* position_;
    QPushButton* previous_;
    QPushButton* next_;
    QTimer* settle_;
};

} // namespace quillet
