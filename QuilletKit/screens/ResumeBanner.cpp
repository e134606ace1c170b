#include "screens/ResumeBanner.hpp"

#include "tasks/queue/TaskQueueService.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillet {

ResumeBanner::ResumeBanner(TaskQueueService& queue, QWidget* parent)
    : QFrame(parent), queue_(queue), line_(new QLabel(this)) {
    setObjectName(QStringLiteral("resumeBanner"));
    line_->setObjectName(QStringLiteral("resumeLine"));
    setAutoFillBackground(true);
    QPalette tinted = palette();
    QColor highlight = tinted.color(QPalette::Highlight);
    highlight.setAlphaF(0.18F);
    tinted.setColor(QPalette::Window, highlight);
    setPalette(tinted);

    auto* title = new QLabel(tr("Previous batch was interrupted"), this);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    line_->setWordWrap(true);
    auto* resume = new QPushButton(tr("Resume"), this);
    resume->setObjectName(QStringLiteral("resumeButton"));
    resume->setDefault(true);
    auto* discard = new QPushButton(tr("Discard"), this);
    discard->setObjectName(QStringLiteral("discardButton"));
    connect(resume, &QPushButton::clicked, this, [this] { queue_.resumePending(); });
    connect(discard, &QPushButton::clicked, this, [this] { queue_.discardPending(); });
    connect(&queue_, &TaskQueueService::pendingResumeChanged, this, &ResumeBanner::refresh);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(title);
    texts->addWidget(line_);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(16, 10, 16, 10);
    layout->addLayout(texts, 1);
    layout->addWidget(resume);
    layout->addWidget(discard);
    refresh();
}

void ResumeBanner::refresh() {
    const auto count = static_cast<int>(queue_.pendingResume().size());
    line_->setText(tr("Task interrupted. Resume %n pending job(s)?", nullptr, count));
    setVisible(count > 0);
}

} // namespace quillet
