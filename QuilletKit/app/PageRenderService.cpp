#include "app/PageRenderService.hpp"

#include "platform/PDFRenderer.hpp"

#include <QFileInfo>
#include <QPointer>
#include <QRunnable>
#include <QThread>

#include <algorithm>
#include <cstring>

namespace quillet {
namespace {

/// One page rendered to fit `box` device pixels, as an RGB image.
QImage renderPage(const PDFRenderer& renderer, const PageRenderService::Request& request,
                  std::chrono::milliseconds timeout, const std::shared_ptr<std::atomic<bool>>& stop) {
    auto document = renderer.open(request.path.toStdString());
    const auto points = document.pageSize(request.pageIndex);
    const double boxWidth = request.box.width() * request.devicePixelRatio;
    const double boxHeight = request.box.height() * request.devicePixelRatio;
    const double scale =
        std::min(boxWidth / std::max(1.0, points.width), boxHeight / std::max(1.0, points.height));
    PDFRenderer::RenderOptions options;
    options.scale = std::max(scale, 0.01);
    options.timeout = timeout;
    options.isCancelled = [stop] { return stop->load(); };
    const Bitmap bitmap = document.render(request.pageIndex, options);
    QImage image(bitmap.width(), bitmap.height(), QImage::Format_RGB888);
    for (int row = 0; row < bitmap.height(); ++row) {
        std::memcpy(image.scanLine(row), bitmap.data() + bitmap.rowBytes() * row,
                    bitmap.rowBytes());
    }
    image.setDevicePixelRatio(request.devicePixelRatio);
    return image;
}

} // namespace

QString PageRenderService::Request::key() const {
    // The file's time and size are part of the key, so a file written over (a result that
    // replaced its original) is never shown from the pictures of its former self.
    const QFileInfo file(path);
    return QStringLiteral("%1\n%2\n%3x%4\n%5\n%6:%7")
        .arg(path)
        .arg(pageIndex)
        .arg(box.width())
        .arg(box.height())
        .arg(devicePixelRatio)
        .arg(file.lastModified().toMSecsSinceEpoch())
        .arg(file.size());
}

PageRenderService::PageRenderService(int threads, int cacheMegabytes, QObject* parent)
    : QObject(parent), renderer_(std::make_shared<PDFRenderer>()),
      cache_(std::max(1, cacheMegabytes) * 1024) {
    pool_.setMaxThreadCount(threads > 0 ? threads : std::max(1, QThread::idealThreadCount()));
}

PageRenderService::~PageRenderService() {
    stop_->store(true);
    pool_.clear();
    pool_.waitForDone();
}

std::optional<QImage> PageRenderService::cached(const Request& request) const {
    if (const QImage* image = cache_.object(request.key())) {
        return *image;
    }
    return std::nullopt;
}

void PageRenderService::render(const Request& request) {
    const QString key = request.key();
    if (cache_.contains(key) || inFlight_.contains(key)) {
        return;
    }
    inFlight_.insert(key);
    const quint64 generation = generation_;
    QPointer<PageRenderService> self(this);
    auto renderer = renderer_;
    pool_.start([self, renderer, request, key, generation, timeout = timeout_, stop = stop_] {
        QImage image;
        QString error;
        try {
            image = renderPage(*renderer, request, timeout, stop);
        } catch (const RenderError& failure) {
            error = failure.reason() == RenderError::Reason::tooSlow
                        ? PageRenderService::tr("This page takes too long to draw")
                        : QString::fromUtf8(failure.what());
        } catch (const std::exception& failure) {
            error = QString::fromUtf8(failure.what());
        }
        // The service waits for running work in its destructor, so it is alive here.
        QMetaObject::invokeMethod(
            self.data(),
            [self, generation, key, image, error] {
                if (self) {
                    self->deliver(generation, key, image, error);
                }
            },
            Qt::QueuedConnection);
    });
}

void PageRenderService::cancelPending() {
    ++generation_;
    stop_->store(true);
    stop_ = std::make_shared<std::atomic<bool>>(false);
    pool_.clear();
    inFlight_.clear();
}

void PageRenderService::deliver(quint64 generation, const QString& key, const QImage& image,
                                const QString& error) {
    if (generation != generation_) {
        return; // asked for before the view moved on
    }
    inFlight_.remove(key);
    if (!error.isEmpty()) {
        emit failed(key, error);
        return;
    }
    const auto cost = static_cast<qsizetype>(std::max<qint64>(1, image.sizeInBytes() / 1024));
    cache_.insert(key, new QImage(image), cost);
    emit rendered(key, image);
}

} // namespace quillet
