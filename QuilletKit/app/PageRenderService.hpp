// Renders PDF pages into QImages on a pool of threads, for thumbnails and previews, and hands
// each result back on the thread that owns the service (the main thread).
//
// A request names a file, a page and the box the picture must fit, in device-independent pixels,
// at a device pixel ratio: the image is rendered at box × ratio so it is sharp on the screen that
// shows it, and carries that ratio. Results are kept in a cache of their own (never on disk: a
// privacy tool leaves no trace of the user's documents in a shared thumbnail folder), keyed by
// file (with its modification time and size), page, box and ratio. `cancelPending` drops the work
// not yet started and stops the pages being drawn within a tenth of a second (a generation
// counter and a stop flag per generation), so a view that scrolled away never waits on pages it
// no longer shows. A page still drawing after the render timeout fails with "This page takes too
// long to draw", which the views show in its place.
#pragma once

#include <QCache>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QSize>
#include <QString>
#include <QThreadPool>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>

namespace quillet {

class PDFRenderer;

class PageRenderService : public QObject {
    Q_OBJECT

  public:
    struct Request {
        QString path;
        int pageIndex = 0;
        QSize box{160, 200};
        qreal devicePixelRatio = 1.0;

        QString key() const;
    };

    /// `threads` 0 means one per core; `cacheMegabytes` bounds the kept images.
    explicit PageRenderService(int threads = 0, int cacheMegabytes = 96, QObject* parent = nullptr);
    /// Waits for the pages being rendered; drops those not started.
    ~PageRenderService() override;

    /// The image for `request` if it was rendered before and is still kept.
    std::optional<QImage> cached(const Request& request) const;
    /// Starts rendering `request` unless it is cached or already on its way; `rendered` or
    /// `failed` follows (nothing for a cached one).
    void render(const Request& request);
    /// Forgets every request not started yet; results of running ones are dropped.
    void cancelPending();
    int pendingCount() const { return static_cast<int>(inFlight_.size()); }
    /// How long one page may take to draw, for the requests that follow; zero: no limit.
    void setRenderTimeout(std::chrono::milliseconds timeout) { timeout_ = timeout; }

  signals:
    void rendered(const QString& key, const QImage& image);
    void failed(const QString& key, const QString& error);

  private:
    void deliver(quint64 generation, const QString& key, const QImage& image, const QString& error);

    std::shared_ptr<PDFRenderer> renderer_;
    QThreadPool pool_;
    QCache<QString, QImage> cache_;
    QSet<QString> inFlight_;
    quint64 generation_ = 0;
    std::shared_ptr<std::atomic<bool>> stop_ = std::make_shared<std::atomic<bool>>(false);
    std::chrono::milliseconds timeout_{30'000};
};

} // namespace quillet
