#include "screens/HomeView.hpp"

#include "app/PageRenderService.hpp"
#include "screens/Coalesced.hpp"
#include "screens/FileCard.hpp"
#include "screens/InspectorSheet.hpp"

#include <QElapsedTimer>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace quillet {

HomeView::HomeView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context), list_(new QVBoxLayout),
      empty_(new QLabel(tr("Drop PDFs above to see what is inside them and what would make "
                           "them better."),
                        this)),
      more_(new QLabel(this)) {
    more_->setWordWrap(true);
    more_->setForegroundRole(QPalette::PlaceholderText);
    more_->hide();
    empty_->setWordWrap(true);
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setForegroundRole(QPalette::PlaceholderText);

    auto* content = new QWidget;
    auto* contentLayout = new QVBoxLayout(content);
    contentLayout->setContentsMargins(0, 0, 4, 0);
    list_->setSpacing(10);
    contentLayout->addLayout(list_);
    contentLayout->addWidget(more_);
    contentLayout->addStretch();
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("cards"));
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(empty_, 1);
    layout->addWidget(scroll, 1);

    AppModel& model = context_.model();
    connectWhenShown(&model, &AppModel::filesChanged, this, &HomeView::rebuild);
    building_.setStepsPerSlice(2);
    // A thousand analyses start or end in a burst: their cards are refreshed together.
    refreshing_.setSingleShot(true);
    refreshing_.setInterval(0);
    connect(&refreshing_, &QTimer::timeout, this, &HomeView::refreshCards);
    connect(&model, &AppModel::analysisChanged, this, [this](const QString& path) {
        if (cardByPath_.contains(path)) {
            changed_.insert(path);
            refreshing_.start();
        }
    });
    connect(&context_.app.renders(), &PageRenderService::rendered, this,
            &HomeView::thumbnailRendered);
    rebuild();
}

QList<FileCard*> HomeView::cards() const {
    QList<FileCard*> cards;
    for (int i = 0; i < list_->count(); ++i) {
        if (auto* card = qobject_cast<FileCard*>(list_->itemAt(i)->widget())) {
            cards << card;
        }
    }
    return cards;
}

void HomeView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Files loaded on another section are analysed once they are looked at here.
    context_.model().ensureAnalyses();
}

void HomeView::rebuild() {
    // A card may be the sender of what changed the files (a recommendation it follows).
    for (FileCard* card : cards()) {
        list_->removeWidget(card);
        card->hide();
        card->deleteLater();
    }
    cardByPath_.clear();
    pendingThumbnails_.clear();
    changed_.clear();
    const QStringList& all = context_.model().files();
    const auto hidden = static_cast<int>(std::max<qsizetype>(0, all.size() - cardLimit));
    more_->setText(
        tr("%n more file(s) loaded without a card. Batch works on every file.", nullptr, hidden));
    more_->setVisible(hidden > 0);
    empty_->setVisible(all.isEmpty());
    // Shown before the cards come: a card added to a shown list is shown on a later turn of the
    // event loop, so laying out the new cards is spread over the turns that make them.
    list_->parentWidget()->setVisible(!all.isEmpty());
    // A card takes a millisecond to make and several more to lay out once shown: they come two
    // a turn.
    const QStringList files = all.mid(0, cardLimit);
    building_.start(static_cast<int>(files.size()), [this, files](int index) {
        const QString& path = files.at(index);
        auto* card = new FileCard(context_, path);
        connect(card, &FileCard::inspectRequested, this, &HomeView::inspect);
        list_->addWidget(card);
        cardByPath_.insert(path, card);
        analysisChanged(path);
    });
}

void HomeView::refreshCards() {
    QElapsedTimer clock;
    clock.start();
    while (!changed_.isEmpty() && clock.elapsed() < SlicedLoop::sliceMilliseconds) {
        const QString path = *changed_.begin();
        changed_.erase(changed_.begin());
        analysisChanged(path);
    }
    if (!changed_.isEmpty()) {
        refreshing_.start(); // the rest on the next turn
    }
}

void HomeView::analysisChanged(const QString& path) {
    FileCard* card = cardByPath_.value(path);
    if (card == nullptr) {
        return;
    }
    card->refresh();
    // The page is drawn here only once a worker has read the file.
    if (context_.model().analysis(path) != nullptr) {
        const qreal ratio = devicePixelRatioF();
        const PageRenderService::Request request{path, 0, FileCard::thumbnailBox, ratio};
        if (const auto image = context_.app.renders().cached(request)) {
            card->setThumbnail(*image);
        } else {
            pendingThumbnails_.insert(request.key(), path);
            context_.app.renders().render(request);
        }
    }
}

void HomeView::thumbnailRendered(const QString& key, const QImage& image) {
    const QString path = pendingThumbnails_.take(key);
    if (FileCard* card = cardByPath_.value(path)) {
        card->setThumbnail(image);
    }
}

void HomeView::inspect(const QString& path) {
    if (const PDFAnalysis* analysis = context_.model().analysis(path)) {
        auto* sheet = new InspectorSheet(path, *analysis, this);
        sheet->setAttribute(Qt::WA_DeleteOnClose);
        sheet->show();
    }
}

} // namespace quillet
